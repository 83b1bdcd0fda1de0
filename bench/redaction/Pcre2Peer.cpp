#include "bench/redaction/Pcre2Peer.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>
#include <stdexcept>

namespace bench
{

using zant::Utf16String;
using zant::Utf16View;
using zant::operator""_utf16;

namespace
{

PCRE2_SPTR16 Units(Utf16View text)
{
    return reinterpret_cast<PCRE2_SPTR16>(text.data());
}

} // namespace

class Pcre2Peer::Expression
{
  public:
    Expression(Utf16View text, std::uint32_t options)
    {
        int error = 0;
        PCRE2_SIZE place = 0;
        m_code = pcre2_compile(Units(text), text.size(), options, &error, &place, nullptr);
        if (m_code == nullptr || pcre2_jit_compile(m_code, PCRE2_JIT_COMPLETE) != 0)
        {
            throw std::runtime_error("the expression does not compile");
        }
        m_match = pcre2_match_data_create_from_pattern(m_code, nullptr);
    }

    Expression(Expression const&) = delete;
    Expression& operator=(Expression const&) = delete;

    ~Expression()
    {
        pcre2_match_data_free(m_match);
        pcre2_code_free(m_code);
    }

    // Where the next match begins and ends is in Begin() and End() then.
    bool Matches(Utf16View text, std::size_t from) const
    {
        return pcre2_jit_match(m_code, Units(text), text.size(), from, 0, m_match, nullptr) > 0;
    }

    std::size_t Begin() const { return pcre2_get_ovector_pointer(m_match)[0]; }
    std::size_t End() const { return pcre2_get_ovector_pointer(m_match)[1]; }

  private:
    pcre2_code* m_code = nullptr;
    pcre2_match_data* m_match = nullptr;
};

Pcre2Peer::Pcre2Peer()
    : m_token(std::make_unique<Expression>("eyJ.*?\\.eyJ"_utf16, PCRE2_DOTALL)),
      m_element(std::make_unique<Expression>(
          "<(proxyusername|proxy-user|proxyuser|user|username|proxy-password|proxypassword|password|proxypass)>"
          "\\K.+?(?=</\\1>)"_utf16,
          PCRE2_DOTALL | PCRE2_CASELESS))
{
}

Pcre2Peer::~Pcre2Peer() = default;

Utf16View Pcre2Peer::Redact(Utf16View message)
{
    if (m_token->Matches(message, 0))
    {
        return "Found access/device token. Log skipped."_utf16;
    }
    m_changed.clear();
    std::size_t copied = 0;
    while (m_element->Matches(message, copied))
    {
        m_changed.append(message, copied, m_element->Begin() - copied).append("****"_utf16);
        copied = m_element->End();
    }
    return copied == 0 ? message : Utf16View(m_changed.append(message, copied));
}

} // namespace bench
