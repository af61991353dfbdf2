// Values of the CIM client that need no server: text, arrays, enumerations and date-times.
#include "clientfixture.h"

#include <cstdlib>
#include <ctime>
#include <limits>

using namespace velmora_clp;

namespace {

std::string textOf(CMPIType type, CMPIValue value) {
    char* text = value2Chars(type, &value);
    std::string copy = text;
    std::free(text);
    return copy;
}

template<typename Number>
std::string textOf(CMPIType type, Number CMPIValue::*member, Number number) {
    CMPIValue value{};
    value.*member = number;
    return textOf(type, value);
}

CMPIValue uint16(CMPIUint16 number) {
    CMPIValue value{};
    value.uint16 = number;
    return value;
}

TEST(ValueText, NumbersAreDecimalAndRealsHaveSixDigits) {
    EXPECT_EQ(textOf(CMPI_uint8, &CMPIValue::uint8, CMPIUint8{200}), "200");
    EXPECT_EQ(textOf(CMPI_uint16, &CMPIValue::uint16, CMPIUint16{65535}), "65535");
    EXPECT_EQ(textOf(CMPI_uint32, &CMPIValue::uint32, CMPIUint32{4294967295}), "4294967295");
    EXPECT_EQ(textOf(CMPI_uint64, &CMPIValue::uint64, std::numeric_limits<CMPIUint64>::max()),
              "18446744073709551615");
    EXPECT_EQ(textOf(CMPI_sint8, &CMPIValue::sint8, CMPISint8{-100}), "-100");
    EXPECT_EQ(textOf(CMPI_sint16, &CMPIValue::sint16, CMPISint16{-5}), "-5");
    EXPECT_EQ(textOf(CMPI_sint32, &CMPIValue::sint32, CMPISint32{-7}), "-7");
    EXPECT_EQ(textOf(CMPI_sint64, &CMPIValue::sint64, std::numeric_limits<CMPISint64>::min()),
              "-9223372036854775808");
    EXPECT_EQ(textOf(CMPI_real32, &CMPIValue::real32, 3.14159274f), "3.14159");
    EXPECT_EQ(textOf(CMPI_real64, &CMPIValue::real64, 1e20), "1e+20");
    EXPECT_EQ(textOf(CMPI_real64, &CMPIValue::real64, 1.234e-05), "1.234e-05");
    EXPECT_EQ(textOf(CMPI_real64, &CMPIValue::real64, 123456789.0), "1.23457e+08");
    EXPECT_EQ(textOf(CMPI_real64, &CMPIValue::real64, 5.0), "5");
}

TEST(ValueText, AnyNonZeroBooleanIsTrueAndTextStaysAsItIs) {
    EXPECT_EQ(textOf(CMPI_boolean, &CMPIValue::boolean, CMPIBoolean{14}), "true");
    EXPECT_EQ(textOf(CMPI_boolean, &CMPIValue::boolean, CMPIBoolean{0}), "false");
    const CimString text(native_new_CMPIString("a <b> & \"c\"", nullptr));
    for (const CMPIType type :
         {CMPI_string, CMPI_numericString, CMPI_booleanString, CMPI_nameString})
        EXPECT_EQ(textOf(type, &CMPIValue::string, text.get()), "a <b> & \"c\"");
    char plain[] = "plain";
    EXPECT_EQ(textOf(CMPI_chars, &CMPIValue::chars, plain), "plain");
    const CimPath path = newPath("root/cimv2", "CIM_Thing");
    EXPECT_EQ(textOf(CMPI_ref, &CMPIValue::ref, path.get()), "root/cimv2:CIM_Thing");
}

TEST(ValueText, WhatIsMissingIsTheWordNullAndWhatHasNoTextIsEmpty) {
    const CimString withoutText(native_new_CMPIString(nullptr, nullptr));
    EXPECT_EQ(textOf(CMPI_string, &CMPIValue::string, withoutText.get()), "NULL");
    for (const CMPIType type : {CMPI_string, CMPI_chars, CMPI_dateTime, CMPI_ref})
        EXPECT_EQ(textOf(type, CMPIValue{}), "NULL");
    for (const CMPIType type : {CMPI_null, CMPI_char16, CMPI_instance, CMPI_args, CMPI_class,
                                CMPI_filter, CMPI_integerString, CMPI_realString})
        EXPECT_EQ(textOf(type, CMPIValue{}), "");
}

TEST(ValueText, AnArrayHasNoTextAndSaysSoOnStandardError) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(textOf(CMPI_uint16A, CMPIValue{}), "");
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_EQ(line, "value2Chars: an array has no text\n");
}

TEST(Strings, HoldTheirTextInTheHandleItself) {
    const CimString text(native_new_CMPIString("text", nullptr));
    EXPECT_STREQ(CMGetCharPtr(text.get()), "text");
    EXPECT_STREQ(CMGetCharsPtr(text.get(), nullptr), "text");
    const CimString copy(CMClone(text.get(), nullptr));
    EXPECT_NE(copy->hdl, text->hdl);
    EXPECT_STREQ(CMGetCharPtr(copy.get()), "text");
    const CimString none(native_new_CMPIString(nullptr, nullptr));
    EXPECT_EQ(CimString(CMClone(none.get(), nullptr))->hdl, nullptr);
    EXPECT_EQ(text->ft->release(nullptr).rc, CMPI_RC_ERR_FAILED);
}

class Arrays : public testing::Test {
protected:
    CMPIrc set(CMPICount index, CMPIValue value, CMPIType type = CMPI_uint16) {
        return array->ft->setElementAt(array.get(), index, &value, type).rc;
    }
    std::string at(CMPICount index) {
        status = CMPIStatus{CMPI_RC_ERROR, nullptr};
        const std::string text = show(array->ft->getElementAt(array.get(), index, status.out()));
        EXPECT_TRUE(status.ok());
        return text;
    }
    CimStatus status;
    CimArray array{native_new_CMPIArray(3, CMPI_uint16, nullptr)};
};

TEST_F(Arrays, ElementsAreNullUntilTheyAreSetAndBadOutside) {
    EXPECT_EQ(array->ft->getSize(array.get(), nullptr), 3U);
    EXPECT_EQ(array->ft->getSimpleType(array.get(), nullptr), CMPI_uint16);
    EXPECT_EQ(set(1, uint16(17)), CMPI_RC_OK);
    EXPECT_EQ(at(0), "0090/0100 null");
    EXPECT_EQ(at(1), "0090/0000 17");
    EXPECT_EQ(at(3), "0090/8000 null");
    EXPECT_EQ(set(1, CMPIValue{}, CMPI_null), CMPI_RC_OK);
    EXPECT_EQ(at(1), "0090/0100 null");
}

TEST_F(Arrays, RefuseOtherTypesAndPlacesOutside) {
    ASSERT_EQ(set(0, uint16(1)), CMPI_RC_OK);
    EXPECT_EQ(set(0, uint16(2), CMPI_sint16), CMPI_RC_ERR_FAILED);
    EXPECT_EQ(set(3, uint16(2)), CMPI_RC_ERR_FAILED);
    EXPECT_EQ(at(0), "0090/0000 1");
}

TEST_F(Arrays, OfSizeNothingGrowByOneButTheirClonesDoNot) {
    array.reset(native_new_CMPIArray(0, CMPI_uint16A, nullptr));
    EXPECT_EQ(set(1, uint16(1)), CMPI_RC_ERR_FAILED);
    EXPECT_EQ(set(0, uint16(1)), CMPI_RC_OK);
    EXPECT_EQ(set(1, uint16(2)), CMPI_RC_OK);
    array.reset(CMClone(array.get(), nullptr));
    EXPECT_EQ(set(2, uint16(3)), CMPI_RC_ERR_FAILED);
    EXPECT_EQ(at(1), "0090/0000 2");
}

TEST_F(Arrays, OfTextTakeCharsByAddressAndKeepUnsetElementsInAClone) {
    array.reset(native_new_CMPIArray(3, CMPI_chars, nullptr));
    char text[] = "first";
    CMPIValue value{};
    value.chars = text;
    EXPECT_EQ(set(0, value, CMPI_chars), CMPI_RC_OK);
    value.chars = nullptr;
    EXPECT_EQ(set(1, value, CMPI_chars), CMPI_RC_OK);
    text[0] = 'F';
    array.reset(CMClone(array.get(), nullptr));
    EXPECT_EQ(at(0), "1600/0000 'first'");
    EXPECT_EQ(at(1), "1600/0100 null");
    EXPECT_EQ(at(2), "1600/0100 null");
    EXPECT_EQ(array->ft->setElementAt(array.get(), 0, nullptr, CMPI_string).rc,
              CMPI_RC_ERR_INVALID_PARAMETER);
}

class Enumerations : public testing::Test {
protected:
    Enumerations() {
        CMPIArray* names = native_new_CMPIArray(2, CMPI_ref, nullptr);
        for (const char* cls : {"A", "B"}) {
            const CimPath path = newPath(nullptr, cls);
            CMPIValue value{};
            value.ref = path.get();
            names->ft->setElementAt(names, *cls - 'A', &value, CMPI_ref);
        }
        list.reset(native_new_CMPIEnumeration(names, nullptr));
    }
    CimEnumeration list;
};

TEST_F(Enumerations, GiveEachElementOnceAndThenABadValue) {
    CimStatus status;
    EXPECT_EQ(show(list.get()), "A\nB\n");
    EXPECT_FALSE(CMHasNext(list.get(), nullptr));
    EXPECT_EQ(CMGetNext(list.get(), status.out()).state, CMPI_badValue);
    EXPECT_TRUE(status.ok());
}

TEST_F(Enumerations, LendTheirArrayAndSeeChangesMadeToItsElements) {
    CMPIArray* array = CMToArray(list.get(), nullptr);
    EXPECT_EQ(array, CMToArray(list.get(), nullptr));
    CMPIObjectPath* first = array->ft->getElementAt(array, 0, nullptr).value.ref;
    first->ft->setNameSpace(first, "root");
    CMGetNext(list.get(), nullptr);
    const CimEnumeration copy(CMClone(list.get(), nullptr));
    EXPECT_EQ(show(copy.get()), "root:A\nB\n");
    EXPECT_EQ(show(list.get()), "B\n");
}

class DateTimes : public testing::Test {
protected:
    DateTimes() { useZone("UTC"); }
    static void useZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
    static std::string text(CMPIUint64 usec, CMPIBoolean interval) {
        const CimDateTime made(native_new_CMPIDateTime_fromBinary(usec, interval, nullptr));
        return cimText(CimString(CMGetStringFormat(made.get(), nullptr)).get());
    }
    static CMPIUint64 usec(const char* format) {
        const CimDateTime made(native_new_CMPIDateTime_fromChars(format, nullptr));
        return CMGetBinaryFormat(made.get(), nullptr);
    }
};

TEST_F(DateTimes, OfAnIntervalCountDaysHoursMinutesSecondsAndMicroseconds) {
    EXPECT_EQ(text(0, 1), "00000000000000.000000:000");
    EXPECT_EQ(text(90061000001, 77), "00000001010101.000001:000");
    EXPECT_EQ(usec("00000001010101.000001:000"), 90061000001U);
    EXPECT_EQ(usec("99999999235959.999999:000"), 8639999999999999999U);
}

TEST_F(DateTimes, OfAPointInTimeCarryTheOffsetInForceAtThatMoment) {
    EXPECT_EQ(text(1577836800123456, 0), "20200101000000.123456+000");
    useZone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(text(1577836800123456, 0), "20200101010000.123456+060");
    EXPECT_EQ(text(1593561600000000, 0), "20200701020000.000000+120");
    useZone("NST3:30");
    EXPECT_EQ(text(1577836800123456, 0), "20191231203000.123456-210");
}

TEST_F(DateTimes, AreReadWithTheOffsetThatIsWrittenInThem) {
    useZone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(usec("20200101000000.123456+000"), 1577836800123456U);
    EXPECT_EQ(usec("20191231203000.123456-210"), 1577836800123456U);
    EXPECT_EQ(usec("19700101000000.000000+060"), 0U);
    EXPECT_EQ(usec("2020**01******.******+000"), 1577836800000000U);
}

TEST_F(DateTimes, FromTextAreKeptByteForByteWhenTheyHaveTheForm) {
    CimStatus status;
    const char* odd = "2020zz01******.******-000";
    const CimDateTime kept(native_new_CMPIDateTime_fromChars(odd, status.out()));
    ASSERT_TRUE(kept);
    EXPECT_EQ(cimText(CimString(CMGetStringFormat(kept.get(), nullptr)).get()), odd);
    EXPECT_FALSE(CMIsInterval(kept.get(), nullptr));
    for (const char* bad : {"", "20200101000000.123456+00", "20200101000000.123456+0000",
                            "20200101000000.123456 000", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(native_new_CMPIDateTime_fromChars(bad, status.out()), nullptr);
        EXPECT_EQ(status.rc(), CMPI_RC_ERR_INVALID_PARAMETER);
    }
}

TEST_F(DateTimes, OfNowAreNow) {
    const CimDateTime made(native_new_CMPIDateTime(nullptr));
    const auto seconds = static_cast<std::time_t>(CMGetBinaryFormat(made.get(), nullptr) / 1000000);
    EXPECT_NEAR(static_cast<double>(seconds), static_cast<double>(std::time(nullptr)), 2);
}

} // namespace
