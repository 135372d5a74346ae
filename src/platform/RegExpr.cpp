// TRegExpr over PCRE2's 16-bit library: compile with JIT, matching under
// limits, and the expansion of replacement templates.
#include "platform/RegExpr.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <algorithm>
#include <utility>

namespace sx {

namespace {

static_assert(sizeof(Char) == sizeof(PCRE2_UCHAR));

/// The whole-word rule wrapped around the user's pattern; its groups keep their numbers.
constexpr char16_t WordFront[] = u"(?<![A-Za-z0-9])(?:";
/// \E closes a \Q the pattern left open (and does nothing otherwise).
constexpr char16_t WordBack[] = u"\\E)(?![A-Za-z0-9])";

PCRE2_SPTR Units(const Char* text) { return reinterpret_cast<PCRE2_SPTR>(text); }

String ErrorText(int code)
{
    PCRE2_UCHAR buffer[256];
    const int length = pcre2_get_error_message(code, buffer, sizeof buffer / sizeof buffer[0]);
    return length < 0 ? u"error " + IntToStr(code) : String(reinterpret_cast<const Char*>(buffer), std::size_t(length));
}

bool IsDigit(Char c) { return c >= u'0' && c <= u'9'; }

}  // namespace

struct TRegExpr::Impl {
    pcre2_code* Code = nullptr;
    pcre2_match_data* Data = nullptr;
    pcre2_match_context* Context = nullptr;
    pcre2_jit_stack* JitStack = nullptr;
    ~Impl()
    {
        pcre2_jit_stack_free(JitStack);
        pcre2_match_context_free(Context);
        pcre2_match_data_free(Data);
        pcre2_code_free(Code);
    }
};

namespace {

pcre2_code* Compile(const String& pattern, TRegExprOptions options)
{
    uint32_t flags = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF | PCRE2_MULTILINE | PCRE2_NEVER_BACKSLASH_C;
    if (!options.CaseSensitive)
        flags |= PCRE2_CASELESS;
    pcre2_compile_context* context = pcre2_compile_context_create(nullptr);
    pcre2_set_newline(context, PCRE2_NEWLINE_LF);
    int error = 0;
    PCRE2_SIZE offset = 0;
    pcre2_code* code = pcre2_compile(Units(pattern.data()), pattern.size(), flags, &error, &offset, context);
    pcre2_compile_context_free(context);
    if (!code)
        throw ERegExprError(ErrorText(error), Integer(offset));
    return code;
}

}  // namespace

TRegExpr::TRegExpr(const String& Pattern, TRegExprOptions Options) : FImpl(std::make_unique<Impl>())
{
    // The bare pattern first, so that errors and their offsets are the user's own.
    FImpl->Code = Compile(Pattern, Options);
    if (Options.WholeWord) {
        pcre2_code_free(std::exchange(FImpl->Code, nullptr));
        FImpl->Code = Compile(WordFront + Pattern + WordBack, Options);
    }
    pcre2_jit_compile(FImpl->Code, PCRE2_JIT_COMPLETE | PCRE2_JIT_PARTIAL_HARD);  // the interpreter when it fails
    FImpl->Data = pcre2_match_data_create_from_pattern(FImpl->Code, nullptr);
    FImpl->Context = pcre2_match_context_create(nullptr);
    pcre2_set_match_limit(FImpl->Context, uint32_t(RegExprMatchLimit));
    pcre2_set_depth_limit(FImpl->Context, uint32_t(RegExprDepthLimit));
    pcre2_set_heap_limit(FImpl->Context, uint32_t(RegExprHeapLimitKiB));
    FImpl->JitStack = pcre2_jit_stack_create(32 * 1024, std::size_t(RegExprJitStackBytes), nullptr);
    pcre2_jit_stack_assign(FImpl->Context, nullptr, FImpl->JitStack);
    if (!FImpl->Data || !FImpl->Context)
        throw EOutOfMemory(u"Out of memory for a regular expression");
    FSpansLines = PatternMaySpanLines(Pattern);
}

TRegExpr::~TRegExpr() = default;

Integer TRegExpr::GroupCount() const
{
    uint32_t count = 0;
    pcre2_pattern_info(FImpl->Code, PCRE2_INFO_CAPTURECOUNT, &count);
    return Integer(count);
}

int TRegExpr::Match(const Char* Subject, Integer Length, Integer From, Cardinal Flags)
{
    FSubject = Subject;
    const int rc = pcre2_match(FImpl->Code, Units(Subject), PCRE2_SIZE(Length), PCRE2_SIZE(From),
                               Flags | PCRE2_NOTEMPTY, FImpl->Data, FImpl->Context);
    if (rc < 0 && rc != PCRE2_ERROR_NOMATCH && rc != PCRE2_ERROR_PARTIAL)
        throw ERegExprLimit(ErrorText(rc));
    return rc;
}

TRegExprHit TRegExpr::Find(const Char* Subject, Integer Length, Integer From, bool AMoreFollows)
{
    return Search(Subject, Length, From, AMoreFollows ? PCRE2_PARTIAL_HARD : 0);
}

TRegExprHit TRegExpr::Search(const Char* Subject, Integer Length, Integer From, Cardinal Flags)
{
    if (!Subject || From < 0 || From >= Length)
        return {};
    const int rc = Match(Subject, Length, From, Flags);
    if (rc == PCRE2_ERROR_PARTIAL)
        return {.NeedsMore = true};
    if (rc < 0)
        return {};
    const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(FImpl->Data);
    // \K may put the reported start behind the end; such a hit counts as none.
    if (ovector[1] <= ovector[0])
        return {};
    return {Integer(ovector[0]), Integer(ovector[1] - ovector[0])};
}

TRegExprHit TRegExpr::FindLast(const Char* Subject, Integer Length, Integer From, Integer Limit)
{
    // The text is cut at the limit, where $ must not match unless the text ends there.
    const Integer cut = std::min(Limit, Length);
    const Cardinal flags = cut < Length ? PCRE2_NOTEOL : 0;
    TRegExprHit last;
    for (Integer from = From; from < cut;) {
        const TRegExprHit hit = Search(Subject, cut, from, flags);
        if (!hit.Found())
            break;
        last = hit;
        from = hit.Start + 1;
    }
    // The groups of the hit kept, for Expand.
    if (last.Found())
        Search(Subject, cut, last.Start, flags | PCRE2_ANCHORED);
    return last;
}

bool TRegExpr::MatchesAt(const Char* Subject, Integer Length, Integer Start, Integer End)
{
    if (!Subject || Start < 0 || Start >= Length)
        return false;
    if (Match(Subject, Length, Start, PCRE2_ANCHORED) < 0)
        return false;
    const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(FImpl->Data);
    return Integer(ovector[0]) == Start && Integer(ovector[1]) == End;
}

String TRegExpr::Group(Integer Number) const
{
    if (!FSubject || Number < 0 || Number >= Integer(pcre2_get_ovector_count(FImpl->Data)))
        return String();
    const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(FImpl->Data);
    const PCRE2_SIZE start = ovector[2 * Number], end = ovector[2 * Number + 1];
    if (start == PCRE2_UNSET || end <= start)
        return String();
    return String(FSubject + start, end - start);
}

Integer TRegExpr::GroupNumber(const String& Name) const
{
    if (!Name.empty() && std::all_of(Name.begin(), Name.end(), IsDigit))
        return Name.size() <= 3 ? Integer(std::stoi(StrToUtf8(Name))) : -1;
    const int number = pcre2_substring_number_from_name(FImpl->Code, Units(Name.c_str()));
    return number < 0 ? -1 : Integer(number);
}

String TRegExpr::Expand(const String& Template) const
{
    String out;
    const std::size_t n = Template.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Char c = Template[i];
        const Char next = i + 1 < n ? Template[i + 1] : Char(0);
        if (c == u'\\' && (next == u'n' || next == u't' || next == u'\\' || next == u'$')) {
            out += next == u'n' ? u'\n' : next == u't' ? u'\t' : next;
            ++i;
        } else if (c == u'$' && IsDigit(next)) {
            Integer number = next - u'0';
            ++i;
            if (i + 1 < n && IsDigit(Template[i + 1]) && number * 10 + (Template[i + 1] - u'0') <= GroupCount()) {
                number = number * 10 + (Template[i + 1] - u'0');
                ++i;
            }
            out += Group(number);
        } else if (const std::size_t close = Template.find(u'}', i); c == u'$' && next == u'{' && close != String::npos) {
            out += Group(GroupNumber(Template.substr(i + 2, close - i - 2)));
            i = close;
        } else {
            out += c;
        }
    }
    return out;
}

}  // namespace sx
