// PatternMaySpanLines: a walk over a PCRE2 pattern that answers False only
// when every part of it is known never to match a line feed. Anything it does
// not know (an escape not on its lists, a verb, a negated class, an option
// group that turns dot-all on) counts as possibly spanning lines: a wrong
// "spans" only costs speed, a wrong "does not" would lose hits.
#include "platform/RegExpr.h"

#include <algorithm>
#include <iterator>

namespace sx {

namespace {

bool IsDigit(Char c) { return c >= u'0' && c <= u'9'; }

/// Letters whose escape outside a class never matches a line feed: \a \b \B
/// \d \e \f \g \h \k \K \t \V \w and \S. \A \z \Z \G are left out on purpose:
/// in the line-by-line scan they would mean a line's start or end, over the
/// joined text they mean the text's, as the user expects.
bool IsSafeEscape(Char c, bool inClass)
{
    // In a class \a, \b (backspace) and \t lie below the line feed and could
    // open a range over it.
    static constexpr char16_t outside[] = u"abBdefghkKtVwS";
    static constexpr char16_t inside[] = u"defhVwS";
    for (const char16_t* p = inClass ? inside : outside; *p; ++p)
        if (*p == c)
            return true;
    return false;
}

class SpanScan {
public:
    explicit SpanScan(const String& pattern) : s(pattern) {}

    bool MaySpan()
    {
        while (i < s.size()) {
            const Char c = s[i++];
            if (c < 0x20)
                return true;  // a line feed, or a control character that may open a range over one
            if (c == u'\\' && !SafeEscape(false))
                return true;
            if (c == u'[' && !SafeClass())
                return true;
            if (c == u'(' && !SafeGroupOpening())
                return true;
        }
        return false;
    }

private:
    Char At(std::size_t k) const { return k < s.size() ? s[k] : Char(0); }

    /// After a backslash: consumes the escape and answers whether it is safe.
    bool SafeEscape(bool inClass)
    {
        const Char c = At(i++);
        if (c == 0)
            return true;  // a lone backslash at the end does not compile
        if (IsDigit(c))  // \1..\9 alone is a back reference outside a class; longer ones may be octal
            return !inClass && c != u'0' && !IsDigit(At(i));
        if (c == u'N')  // \N is "not a line feed"; \N{U+...} names any character
            return At(i) != u'{';
        if ((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'))
            return IsSafeEscape(c, inClass);
        return c >= 0x20;  // an escaped punctuation character stands for itself
    }

    /// After "[": consumes the class and answers whether it is safe.
    bool SafeClass()
    {
        if (At(i) == u'^')
            return false;
        if (At(i) == u']')
            ++i;  // a "]" first in a class stands for itself
        while (i < s.size()) {
            const Char c = s[i++];
            if (c == u']')
                return true;
            if (c < 0x20 || (c == u'\\' && !SafeEscape(true)))
                return false;
            if (c == u'[' && At(i) == u':' && !SafePosixClass())
                return false;
        }
        return true;  // an open class does not compile
    }

    /// After "[" of "[:name:]" inside a class.
    bool SafePosixClass()
    {
        const std::size_t close = s.find(u":]", i + 1);
        if (close == String::npos)
            return true;
        const String name = s.substr(i + 1, close - i - 1);
        i = close + 2;
        // The classes without a control character, and the word boundaries [[:<:]] and [[:>:]].
        static const String safe[] = {u"alnum", u"alpha", u"blank", u"digit", u"graph", u"lower",
                                      u"print", u"punct", u"upper", u"word",  u"xdigit", u"<", u">"};
        return std::find(std::begin(safe), std::end(safe), name) != std::end(safe);
    }

    /// After "(": a verb such as (*CR) may change what a dot matches, and an
    /// option setting may turn dot-all on.
    bool SafeGroupOpening()
    {
        if (At(i) == u'*')
            return false;
        if (At(i) != u'?')
            return true;
        for (std::size_t k = i + 1; k < s.size(); ++k) {
            const Char c = s[k];
            if (c == u's')
                return false;
            if (!((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'^' || c == u'-'))
                return true;
        }
        return true;
    }

    const String& s;
    std::size_t i = 0;
};

}  // namespace

bool PatternMaySpanLines(const String& Pattern) { return SpanScan(Pattern).MaySpan(); }

}  // namespace sx
