// How a show writes one target in each of the three forms, from prepared records.
#include "output/paging.h"
#include "output/propvalue.h"
#include "output/showform.h"
#include "tests/unit/output_support.h"
#include "velclp/cimhandle.h"
#include "velclp/coutputer.h"

#include <CimClientLib/native.h>
#include <gtest/gtest.h>

using namespace output_test;
using namespace velmora_clp;

namespace {

CimString cimString(const std::string& text) {
    return CimString(native_new_CMPIString(text.c_str(), nullptr));
}

CMPIData uint16(unsigned short number) {
    CMPIData data = {CMPI_uint16, CMPI_goodValue, {}};
    data.value.uint16 = number;
    return data;
}

CimArray stringArray(const std::vector<std::string>& texts) {
    CimArray array(
        native_new_CMPIArray(static_cast<CMPICount>(texts.size()), CMPI_string, nullptr));
    for (CMPICount i = 0; i < texts.size(); ++i) {
        const CimString text = cimString(texts[i]);
        CMPIValue value = {};
        value.string = text.get();
        array->ft->setElementAt(array.get(), i, &value, CMPI_string);
    }
    return array;
}

OwnedPropValue text(const std::string& content) {
    const CimString string = cimString(content);
    CMPIData data = {CMPI_string, CMPI_goodValue, {}};
    data.value.string = string.get();
    return copyValue(data);
}

OwnedPropValue number(unsigned short value, const std::vector<std::string>& valuemap = {},
                      const std::vector<std::string>& values = {}) {
    OwnedPropValue property = copyValue(uint16(value));
    if (!valuemap.empty())
        property->valuemap = stringArray(valuemap).release();
    if (!values.empty())
        property->values = stringArray(values).release();
    return property;
}

// Elements 1 and 2 of three; the one between is not set.
OwnedPropValue numbers() {
    const CimArray array(native_new_CMPIArray(3, CMPI_uint16, nullptr));
    CMPIData one = uint16(1), two = uint16(2);
    array->ft->setElementAt(array.get(), 0, &one.value, CMPI_uint16);
    array->ft->setElementAt(array.get(), 2, &two.value, CMPI_uint16);
    CMPIData data = {CMPI_uint16A, CMPI_goodValue, {}};
    data.value.array = array.get();
    OwnedPropValue property = copyValue(data);
    property->valuemap = stringArray({"1", "2"}).release();
    property->values = stringArray({"Other", "Serial"}).release();
    return property;
}

OwnedPropValue nothing(CMPIType type) {
    return copyValue(CMPIData{type, CMPI_nullValue, {}});
}

std::vector<ShownProperty> allKinds() {
    std::vector<ShownProperty> properties;
    properties.push_back({"Name", text("a <b>")});
    properties.push_back({"EnabledState", number(2, {"2", "3"}, {"Enabled", "Disabled"})});
    properties.push_back({"Kinds", numbers()});
    properties.push_back({"Owner", nothing(CMPI_string)});
    properties.push_back({"Empty", nothing(CMPI_uint16A)});
    return properties;
}

ShownAssociation association() {
    return {"hostedservice",
            {{"Antecedent", "/admin1/system1", true},
             {"Weight", "5", false},
             {"Dependent", "/admin1/system1/svc2", true}}};
}

std::string shown(int form) {
    return bytesOf([form](Transport& transport) {
        const auto target = ShowForm::make(form, transport);
        target->openTarget("/admin1/system1");
        target->properties(allKinds());
        target->verbs({"cd", "show", "oemvelmora_reset", "my_oem"}, false);
        target->openAssociations();
        target->association(association(), "/ADMIN1/system1");
        target->closeAssociations();
        target->targets({"sp1", "log2"});
        target->closeInstance();
        target->closeTarget();
    });
}

} // namespace

TEST(ShownTarget, InTextIndentsSectionsByOneTabAndItemsByTwo) {
    EXPECT_EQ("\r\n/admin1/system1\r\n"
              "\tproperties\r\n"
              "\t\tName = a <b>\r\n"
              "\t\tEnabledState = 2 (Enabled)\r\n"
              "\t\tKinds[0] = 1 (Other)\r\n"
              "\t\tKinds[1] = NULL\r\n"
              "\t\tKinds[2] = 2 (Serial)\r\n"
              "\t\tOwner = NULL\r\n"
              "\t\tEmpty = \r\n"
              "\tverbs\r\n\t\tcd\r\n\t\tshow\r\n"
              "\tassociations\r\n\t\thostedservice : \r\n"
              "\t\t\tAntecedent = /admin1/system1\r\n"
              "\t\t\tWeight = 5\r\n"
              "\t\t\tDependent = /admin1/system1/svc2\r\n"
              "\ttargets\r\n\t\tsp1\r\n\t\tlog2\r\n",
              shown(COutputer::TEXT_FORM));
}

TEST(ShownTarget, InKeywordFormIsAGroupOfGroupsAndLeavesItsOwnEndOut) {
    EXPECT_EQ("begingroup=instance\r\nufip=/admin1/system1\r\n"
              "begingroup=property\r\nproperty_name=Name\r\nproperty_val=a <b>\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=EnabledState\r\nproperty_val=2\r\n"
              "property_valstring=Enabled\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=Kinds\r\nproperty_val=1\r\n"
              "property_valstring=Other\r\nproperty_val=NULL\r\nproperty_val=2\r\n"
              "property_valstring=Serial\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=Owner\r\nproperty_val=NULL\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=Empty\r\nproperty_val=\r\nendgroup\r\n"
              "begingroup=verbs\r\nverb=cd\r\nverb=show\r\nendgroup\r\n"
              "begingroup=association\r\nufct=hostedservice\r\n"
              "begingroup=property\r\nproperty_name=Weight\r\nproperty_val=5\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=Dependent\r\n"
              "property_val=/admin1/system1/svc2\r\nendgroup\r\n"
              "endgroup\r\n"
              "begingroup=targets\r\nufip=sp1\r\nufip=log2\r\nendgroup\r\n"
              "endgroup\r\n",
              shown(COutputer::KEYWORD_FORM));
}

TEST(ShownTarget, InXmlIsOneRunOfElements) {
    EXPECT_EQ(
        "<target><instance><ufit ufct=\"system\" instance=\"1\">system1</ufit>"
        "<ufip>/admin1/system1</ufip><properties>"
        "<property><name>Name</name><value><val>a <b></val></value></property>"
        "<property><name>EnabledState</name><value><val>2</val><valstring>Enabled</valstring>"
        "</value></property>"
        "<property><name>Kinds</name><multivalue><index>0</index><value><val>1</val>"
        "<valstring>Other</valstring></value><index>1</index><value><val>NULL</val></value>"
        "<index>2</index><value><val>2</val><valstring>Serial</valstring></value></multivalue>"
        "</property>"
        "<property><name>Owner</name><value><val>NULL</val></value></property>"
        "<property><name>Empty</name><multivalue></multivalue></property></properties>"
        "<verbs><standardverbs>cd show oemvelmora_reset my_oem </standardverbs></verbs>"
        "<associations><association><ufct>hostedservice</ufct>"
        "<reference><name>Antecedent</name><instance><ufit ufct=\"system\" instance=\"1\">system1"
        "</ufit><ufip>/admin1/system1</ufip></instance></reference>"
        "<reference><name>Dependent</name><instance><ufit ufct=\"svc\" instance=\"2\">svc2</ufit>"
        "<ufip>/admin1/system1/svc2</ufip></instance></reference>"
        "<properties><property><name>Weight</name><value><val>5</val></value></property>"
        "</properties></association></associations></instance></target>",
        shown(COutputer::CLPXML_FORM));
}

TEST(ShownVerbs, OfAVendorNeedTheOptionForThem) {
    const auto verbs = [](int form) {
        return bytesOf([form](Transport& transport) {
            ShowForm::make(form, transport)->verbs({"show", "OEMvelmora_x", "my_oem"}, true);
        });
    };
    EXPECT_EQ("\tverbs\r\n\t\tshow\r\n\t\tOEMvelmora_x\r\n\t\tmy_oem\r\n",
              verbs(COutputer::TEXT_FORM));
    EXPECT_EQ("begingroup=verbs\r\nverb=show\r\nverb=OEMvelmora_x\r\nverb=my_oem\r\nendgroup\r\n",
              verbs(COutputer::KEYWORD_FORM));
    EXPECT_EQ("<verbs><standardverbs>show OEMvelmora_x my_oem </standardverbs>"
              "<oemverbs>OEMvelmora_x </oemverbs></verbs>",
              verbs(COutputer::CLPXML_FORM));
}

TEST(ShownTarget, WithoutAnAddressHasAnEmptyUfit) {
    EXPECT_EQ("<target><instance><ufit ufct=\"\" instance=\"\"></ufit><ufip></ufip>",
              bytesOf([](Transport& transport) {
                  ShowForm::make(COutputer::CLPXML_FORM, transport)->openTarget("");
              }));
}

TEST(ShownValue, HasANameOnlyWhereBothQualifiersHoldIt) {
    const auto name = [](const OwnedPropValue& value) {
        return shownText(*value->data, value->values, value->valuemap).name;
    };
    EXPECT_EQ("Disabled", name(number(3, {"2", "3"}, {"Enabled", "Disabled"})));
    EXPECT_FALSE(name(number(4, {"2", "3"}, {"Enabled", "Disabled"})));
    EXPECT_FALSE(name(number(3, {"2", "3"}, {"Enabled"}))) << "Values is shorter than ValueMap";
    EXPECT_FALSE(name(number(3, {}, {"Enabled", "Disabled"})));
    EXPECT_FALSE(name(number(3, {"2", "3"}, {})));
}

TEST(ShownValue, ThatIsNullIsCalledSo) {
    char* value = nullptr;
    char* name = nullptr;
    COutputer::SET_VALUE_VALUEMAP_STR(nullptr, nullptr, nullptr, &value, &name);
    EXPECT_STREQ("NULL", value);
    EXPECT_EQ(nullptr, name);
    std::free(value);
    CMPIData two = uint16(2);
    const CimArray map = stringArray({"2"}), names = stringArray({"Enabled"});
    COutputer::SET_VALUE_VALUEMAP_STR(&two, names.get(), map.get(), &value, &name);
    EXPECT_STREQ("2", value);
    EXPECT_STREQ("Enabled", name);
    std::free(value);
    std::free(name);
}

TEST(ShownValue, CannotGiveOrdersToTheTerminal) {
    const OwnedPropValue value = text("a\x1b[2Jb\x07\x7f\tc\xc3\xa4");
    EXPECT_EQ("a?[2Jb??\tc\xc3\xa4", shownText(*value->data, nullptr, nullptr).value);
    const OwnedPropValue disguised = text("a\xc2\x9bJ\xc2\xa9\rstatus=0\r\nb\r");
    EXPECT_EQ("a?J\xc2\xa9?status=0\r\nb?", shownText(*disguised->data, nullptr, nullptr).value);
}

TEST(TextProperties, AreInTheOrderOfTheirNames) {
    std::map<std::string, PropValue*> properties;
    const OwnedPropValue kinds = numbers(), name = text("x"), empty = nothing(CMPI_uint16A);
    properties = {{"b", name.get()},
                  {"a", kinds.get()},
                  {"c", empty.get()},
                  {"d", nullptr},
                  {"", name.get()}};
    EXPECT_EQ("\tproperties\r\n\t\ta[0] = 1 (Other)\r\n\t\ta[1] = NULL\r\n"
              "\t\ta[2] = 2 (Serial)\r\n\t\tb = x\r\n\t\tc = NULL\r\n\t\td = NULL\r\n",
              bytesOf([&](Transport& transport) {
                  COutputer(nullptr, &transport).txt_show_properties_interval(properties, true);
              }));
    properties = {{"d", nullptr}};
    EXPECT_EQ("\t\td = NULL\r\n", bytesOf([&](Transport& transport) {
                  COutputer(nullptr, &transport).txt_show_properties_interval(properties, false);
              }));
}

namespace {

std::string page(const Page& page) {
    return std::to_string(page.start) + "-" + std::to_string(page.end);
}
std::string ofText(const std::string& options, long count) {
    return page(textPage(*parsed("show -o " + options + " system*"), count));
}
std::string ofTree(const std::string& options, long count) {
    return page(treePage(*parsed("show -o " + options + " system*"), count));
}

} // namespace

TEST(Paging, ByNumberCountsFromOneInBothForms) {
    for (const auto& paging : {ofText, ofTree}) {
        EXPECT_EQ("1-3", paging("number=2-3", 5));
        EXPECT_EQ("0-5", paging("number=1-99", 5));
        EXPECT_EQ("0-3", paging("number=0-3", 5));
        EXPECT_EQ("5-5", paging("number=6-9", 5));
        EXPECT_EQ("0-0", paging("number=1-4", 0));
    }
}

TEST(Paging, ByCountAtEitherEndCutsInBothForms) {
    for (const auto& paging : {ofText, ofTree}) {
        EXPECT_EQ("0-2", paging("begin,count=2", 5));
        EXPECT_EQ("0-5", paging("count=9,begin", 5));
        EXPECT_EQ("3-5", paging("end,count=2", 5));
        EXPECT_EQ("0-5", paging("end,count=9", 5));
        EXPECT_EQ("0-5", paging("begin", 5));
        EXPECT_EQ("0-5", paging("end", 5));
        EXPECT_EQ("0-5", paging("begin,count=99999999999999999999", 5));
    }
}

TEST(Paging, ByCountAloneCutsTheTextFormOnly) {
    EXPECT_EQ("0-3", ofText("count=3", 5));
    EXPECT_EQ("0-0", ofText("count=0", 5));
    EXPECT_EQ("0-5", ofText("count=all", 5));
    EXPECT_EQ("0-5", ofText("count=()", 5));
    EXPECT_EQ("0-5", ofTree("count=3", 5));
}

TEST(Paging, ReadsAllAsNothingInTheTreeForm) {
    EXPECT_EQ("0-5", ofText("begin,count=all", 5));
    EXPECT_EQ("0-0", ofTree("begin,count=all", 5));
    EXPECT_EQ("5-5", ofTree("end,count=all", 5));
}
