// Exceptions and string helpers of the framework layer, with the classic
// semantics the system relies on (ASCII-only case mapping, CR LF line breaks).
#pragma once

#include "platform/Sets.h"
#include "platform/Types.h"

#include <exception>
#include <string>

namespace sx {

/// Base of all exceptions the framework layer and the system raise.
class Exception : public std::exception {
public:
    explicit Exception(String message);
    const String& Message() const { return FMessage; }
    const char* what() const noexcept override { return FUtf8.c_str(); }

private:
    String FMessage;
    std::string FUtf8;
};

/// The silent exception: ends an operation without a message to the user.
class EAbort : public Exception {
public:
    EAbort() : Exception(u"Operation aborted") {}
    explicit EAbort(String message) : Exception(std::move(message)) {}
};

class EInvalidOperation : public Exception {
    using Exception::Exception;
};

class EListError : public Exception {
    using Exception::Exception;
};

class EStreamError : public Exception {
    using Exception::Exception;
};

/// A file that cannot be opened or read: the message names it and gives the system's reason.
class EFOpenError : public EStreamError {
    using EStreamError::EStreamError;
};

/// A file that cannot be made or written: the message names it and gives the system's reason.
class EFCreateError : public EStreamError {
    using EStreamError::EStreamError;
};

class EConvertError : public Exception {
    using Exception::Exception;
};

/// Memory that cannot be had: raised before an allocation that could not succeed.
class EOutOfMemory : public Exception {
    using Exception::Exception;
};

enum class TStringSearchOption { soDown, soMatchCase, soWholeWord };
/// The flags of SearchBuf, one byte: bit 0 soDown, 1 soMatchCase, 2 soWholeWord.
using TStringSearchOptions = TSet<TStringSearchOption, 8>;

/// Raises EAbort.
[[noreturn]] void Abort();

/// The line break of joined text.
inline const String sLineBreak = u"\r\n";

/// Upper case of 'a'..'z' only; every other character stays.
Char UpCase(Char c);
String UpperCase(const String& s);
String LowerCase(const String& s);
/// Compares ASCII case-blind: below 0, 0 or above 0.
int CompareText(const String& a, const String& b);
/// Removes leading and trailing characters with codes up to 32.
String Trim(const String& s);
/// Removes trailing characters with codes up to 32.
String TrimRight(const String& s);
String IntToStr(long long value);
/// a * b / c rounded to the nearest integer, halves away from zero.
Integer MulDiv(Integer a, Integer b, Integer c);

}  // namespace sx
