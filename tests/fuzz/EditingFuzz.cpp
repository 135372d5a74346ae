// Fuzz target for the editing engine: the bytes are a starting text and a
// sequence of at most 100 operations on a fresh control, as a user and an
// application drive it. After every step the invariants of the control are
// checked, and at the end, when the sequence held nothing that undo does not
// restore, undoing every record must give back the starting text.
#include "support/EditingSession.h"
#include "FuzzSupport.h"

#include "support/ModalAnswers.h"
#include "support/RenderHelpers.h"

#include <QApplication>

using namespace sx;
using namespace sx::fuzz;
using namespace sx::test;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Made once and never destroyed: libFuzzer ends the process with exit(),
    // and Qt's own globals may be gone before static destructors would run.
    new QApplication(*argc, *argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    RefuseModals();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Host* host = new Host;
    ByteReader in(data, size);
    TSxCodeExtOptions options;
#ifdef SX_FUZZ_EDIT_OPTIONS
    // The first byte switches the extended options on, one bit each.
    const Integer mask = in.Below(128);
    for (const auto option : {TSxCodeExtOption::coLineNumbers, TSxCodeExtOption::coCurrentLine,
                              TSxCodeExtOption::coBracketMatch, TSxCodeExtOption::coRedo,
                              TSxCodeExtOption::coGroupUndo, TSxCodeExtOption::coFolding})
        if (mask & (1 << int(option)))
            options.Include(option);
#endif
    RunEditingSession(*host, in, 100, [](const std::string& what) { Fail("editing", what); }, options);
    return 0;
}
