#include "VsdCsv.h"

#include <KbbGlobal.h>

#include <charconv>
#include <cmath>
#include <string_view>

bool VsdCsv::parseNumber(const char* begin, const char* end, double& value)
{
    while (begin < end && (*begin == ' ' || *begin == '\t'))
        ++begin;
    while (end > begin && (end[-1] == ' ' || end[-1] == '\t'))
        --end;
    if (begin == end) {
        value = KbbGlobal::D_FFFF;
        return true;
    }
    if (*begin == '+' && end - begin > 1 && begin[1] != '-')
        ++begin;
    // from_chars ignores the locale, which a Qt application sets from the environment.
    double parsed = 0;
    const std::from_chars_result result = std::from_chars(begin, end, parsed);
    if (result.ptr != end || (result.ec != std::errc() && result.ec != std::errc::result_out_of_range))
        return false;
    if (result.ec == std::errc::result_out_of_range) {
        // Beyond the smallest double is zero; beyond the largest, no value at all.
        const std::string_view text(begin, size_t(end - begin));
        const bool underflow = text.find("e-") != text.npos || text.find("E-") != text.npos;
        value = underflow ? (*begin == '-' ? -0.0 : 0.0) : KbbGlobal::D_FFFF;
        return true;
    }
    value = std::isfinite(parsed) ? parsed : KbbGlobal::D_FFFF;
    return true;
}
