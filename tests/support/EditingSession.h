// A driver of the editing engine for randomized tests: bytes become a
// starting text and a sequence of operations on a fresh control, as a user
// and an application drive it, with the control's invariants checked after
// every step and an undo round trip at the end, then a redo one. The fuzz target feeds it the
// fuzzer's bytes, the ordinary suite bytes from a seeded generator.
#pragma once

#include "support/ByteReader.h"
#include "support/RenderHelpers.h"

#include <functional>
#include <memory>
#include <string>

namespace sx::test {

class EditingSession {
public:
    /// AOnFailure receives a description of a broken invariant and the steps so far.
    EditingSession(Host& AHost, std::function<void(const std::string&)> AOnFailure);
    ~EditingSession();
    EditingSession(const EditingSession&) = delete;
    EditingSession& operator=(const EditingSession&) = delete;

    /// Reads a starting text, then up to AMaxSteps operations until the bytes run out.
    void Run(ByteReader& AIn, int AMaxSteps);
    /// Whether the last run ended with the undo round trip checked.
    bool RoundTripChecked() const;

private:
    class Impl;
    std::unique_ptr<Impl> FImpl;
};

}  // namespace sx::test
