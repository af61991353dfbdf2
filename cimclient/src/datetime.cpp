#include "objects.h"
#include "status.h"
#include "text.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <utility>

// DSP0004, 5.2.4: "yyyymmddhhmmss.mmmmmm+utc" is a point in time, "ddddddddhhmmss.mmmmmm:000" an
// interval. Fields are found from the end, so that a longer count of days is read as well.
namespace cimclient {

namespace {

constexpr std::size_t formatSize = 25;
constexpr CMPIUint64 usecPerSecond = 1000000;

char separatorOf(std::string_view text) {
    return text.size() < formatSize ? '\0' : text[text.size() - 4];
}

// The number in a field; anything but a digit, such as an asterisk, counts as 0.
CMPIUint64 field(std::string_view digits) {
    CMPIUint64 value = 0;
    for (const char c : digits)
        value = value * 10 + (c >= '0' && c <= '9' ? static_cast<CMPIUint64>(c - '0') : 0);
    return value;
}

// What both forms have in common, in front of which stand the days or the date.
struct Fields {
    explicit Fields(std::string_view text)
        : lead(text.substr(0, text.size() - 17)),
          hours(field(text.substr(text.size() - 17, 2))),
          minutes(field(text.substr(text.size() - 15, 2))),
          seconds(field(text.substr(text.size() - 13, 2))),
          usec(field(text.substr(text.size() - 10, 6))),
          offset(field(text.substr(text.size() - 3, 3))) {}

    std::string_view lead;
    CMPIUint64 hours, minutes, seconds, usec, offset;
};

CMPIUint64 intervalMicroseconds(const Fields& fields) {
    const CMPIUint64 hours = field(fields.lead) * 24 + fields.hours;
    return ((hours * 60 + fields.minutes) * 60 + fields.seconds) * usecPerSecond + fields.usec;
}

// 0 for what lies before 1970.
CMPIUint64 pointMicroseconds(const Fields& fields, char sign) {
    const std::string_view date = fields.lead;
    std::tm tm{};
    tm.tm_year = static_cast<int>(field(date.substr(0, date.size() - 4))) - 1900;
    tm.tm_mon = static_cast<int>(field(date.substr(date.size() - 4, 2)));
    tm.tm_mon = tm.tm_mon > 0 ? tm.tm_mon - 1 : 0;
    tm.tm_mday = static_cast<int>(field(date.substr(date.size() - 2, 2)));
    tm.tm_mday = tm.tm_mday > 0 ? tm.tm_mday : 1;
    tm.tm_hour = static_cast<int>(fields.hours);
    tm.tm_min = static_cast<int>(fields.minutes);
    tm.tm_sec = static_cast<int>(fields.seconds);
    const auto offset = static_cast<std::time_t>(fields.offset) * 60;
    const std::time_t seconds = timegm(&tm) - (sign == '-' ? -offset : offset);
    return seconds < 0 ? 0 : static_cast<CMPIUint64>(seconds) * usecPerSecond + fields.usec;
}

void appendPadded(std::string& out, CMPIUint64 value, std::size_t width) {
    std::string digits;
    appendInteger(digits, value);
    if (digits.size() < width)
        out.append(width - digits.size(), '0');
    out += digits;
}

void appendTime(std::string& out, CMPIUint64 secondOfDay, CMPIUint64 usec) {
    appendPadded(out, secondOfDay / 3600, 2);
    appendPadded(out, secondOfDay / 60 % 60, 2);
    appendPadded(out, secondOfDay % 60, 2);
    out += '.';
    appendPadded(out, usec, 6);
}

std::string intervalText(CMPIUint64 usec) {
    const CMPIUint64 seconds = usec / usecPerSecond;
    std::string out;
    appendPadded(out, seconds / 86400, 8);
    appendTime(out, seconds % 86400, usec % usecPerSecond);
    return out += ":000";
}

CMPIUint64 unsignedOf(long value) {
    return static_cast<CMPIUint64>(value);
}

// Local time with the offset in force at that moment.
std::string pointText(CMPIUint64 usec) {
    const auto seconds = static_cast<std::time_t>(usec / usecPerSecond);
    std::tm local{};
    localtime_r(&seconds, &local);
    const long offset = local.tm_gmtoff / 60;
    const std::time_t shifted = seconds + offset * 60;
    std::tm tm{};
    gmtime_r(&shifted, &tm);
    std::string out;
    appendPadded(out, unsignedOf(tm.tm_year) + 1900, 4);
    appendPadded(out, unsignedOf(tm.tm_mon) + 1, 2);
    appendPadded(out, unsignedOf(tm.tm_mday), 2);
    appendTime(out,
               (unsignedOf(tm.tm_hour) * 60 + unsignedOf(tm.tm_min)) * 60 + unsignedOf(tm.tm_sec),
               usec % usecPerSecond);
    out += offset < 0 ? '-' : '+';
    appendPadded(out, unsignedOf(std::labs(offset)), 3);
    return out;
}

CMPIUint64 getBinaryFormat(CMPIDateTime* dateTime, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    if (!dateTime)
        return 0;
    setOk(rc);
    const std::string& text = DateTime::from(dateTime)->text;
    const char separator = separatorOf(text);
    return separator == ':' ? intervalMicroseconds(Fields(text))
                            : pointMicroseconds(Fields(text), separator);
}

CMPIString* getStringFormat(CMPIDateTime* dateTime, CMPIStatus* rc) {
    if (!dateTime)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    setOk(rc);
    return newString(DateTime::from(dateTime)->text);
}

CMPIBoolean isInterval(CMPIDateTime* dateTime, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    if (!dateTime)
        return 0;
    setOk(rc);
    return separatorOf(DateTime::from(dateTime)->text) == ':';
}

CMPIDateTimeFT table = {NATIVE_FT_VERSION, releaseSlot<DateTime>, cloneSlot<DateTime>,
                        getBinaryFormat,   getStringFormat,       isInterval};

} // namespace

DateTime::DateTime(std::string format)
    : CMPIDateTime{const_cast<char*>("CMPIDateTime"), &table}, text(std::move(format)) {}

bool DateTime::accepts(std::string_view text) {
    const char separator = separatorOf(text);
    return text.size() == formatSize && (separator == '+' || separator == '-' || separator == ':');
}

} // namespace cimclient

CIMCLIENT_EXPORT CMPIDateTime* native_new_CMPIDateTime(CMPIStatus* rc) {
    using namespace std::chrono;
    const auto now = duration_cast<microseconds>(system_clock::now().time_since_epoch());
    return native_new_CMPIDateTime_fromBinary(static_cast<CMPIUint64>(now.count()), 0, rc);
}

CIMCLIENT_EXPORT CMPIDateTime*
native_new_CMPIDateTime_fromBinary(CMPIUint64 usec, CMPIBoolean interval, CMPIStatus* rc) {
    cimclient::setOk(rc);
    return new cimclient::DateTime(interval ? cimclient::intervalText(usec)
                                            : cimclient::pointText(usec));
}

CIMCLIENT_EXPORT CMPIDateTime* native_new_CMPIDateTime_fromChars(const char* text, CMPIStatus* rc) {
    if (!text || !cimclient::DateTime::accepts(text))
        return cimclient::noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    cimclient::setOk(rc);
    return new cimclient::DateTime(text);
}
