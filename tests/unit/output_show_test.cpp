// How a show writes one target in each of the three forms, from prepared records.
#include "output/paging.h"
#include "output/propvalue.h"
#include "output/showform.h"
#include "tests/unit/fake_cim.h"
#include "tests/unit/output_support.h"
#include "velclp/coutputer.h"

#include <gtest/gtest.h>

using namespace output_test;
using namespace velmora_clp;

namespace {

OwnedPropValue propertyOf(const fakecim::Value& content) {
    return copyValue(fakecim::Data(content).get());
}

OwnedPropValue number(const char* value, const std::vector<std::string>& valuemap,
                      const std::vector<std::string>& values) {
    OwnedPropValue property = propertyOf(fakecim::number(CMPI_uint16, value));
    if (!valuemap.empty())
        property->valuemap = fakecim::arrayOfTexts(valuemap).release();
    if (!values.empty())
        property->values = fakecim::arrayOfTexts(values).release();
    return property;
}

// Elements 1 and 2 of three; the one between is not set.
OwnedPropValue numbers() {
    fakecim::Data data({CMPI_uint16A, {"1", "", "2"}});
    CMPIArray* const array = data.get().value.array;
    array->ft->setElementAt(array, 1, nullptr, CMPI_null);
    OwnedPropValue property = copyValue(data.get());
    property->valuemap = fakecim::arrayOfTexts({"1", "2"}).release();
    property->values = fakecim::arrayOfTexts({"Other", "Serial"}).release();
    return property;
}

std::vector<ShownProperty> allKinds() {
    std::vector<ShownProperty> properties;
    properties.push_back({"Name", propertyOf(fakecim::text("a <b>"))});
    properties.push_back({"EnabledState", number("2", {"2", "3"}, {"Enabled", "Disabled"})});
    properties.push_back({"Kinds", numbers()});
    properties.push_back({"Owner", propertyOf(fakecim::null(CMPI_string))});
    properties.push_back({"Empty", propertyOf(fakecim::null(CMPI_uint16A))});
    return properties;
}

std::string shown(int form) {
    return bytesOf(
        [form](Transport& transport) { ShowForm::make(form, transport)->properties(allKinds()); });
}

} // namespace

TEST(ShownProperties, HaveNamesOrIndexesBesideTheirValuesInEveryForm) {
    EXPECT_EQ("\tproperties\r\n"
              "\t\tName = a <b>\r\n"
              "\t\tEnabledState = 2 (Enabled)\r\n"
              "\t\tKinds[0] = 1 (Other)\r\n"
              "\t\tKinds[1] = NULL\r\n"
              "\t\tKinds[2] = 2 (Serial)\r\n"
              "\t\tOwner = NULL\r\n"
              "\t\tEmpty = \r\n",
              shown(COutputer::TEXT_FORM));
    EXPECT_EQ("begingroup=property\r\nproperty_name=Name\r\nproperty_val=a <b>\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=EnabledState\r\nproperty_val=2\r\n"
              "property_valstring=Enabled\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=Kinds\r\nproperty_val=1\r\n"
              "property_valstring=Other\r\nproperty_val=NULL\r\nproperty_val=2\r\n"
              "property_valstring=Serial\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=Owner\r\nproperty_val=NULL\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=Empty\r\nproperty_val=\r\nendgroup\r\n",
              shown(COutputer::KEYWORD_FORM));
    EXPECT_EQ(
        "<properties><property><name>Name</name><value><val>a <b></val></value></property>"
        "<property><name>EnabledState</name><value><val>2</val><valstring>Enabled</valstring>"
        "</value></property>"
        "<property><name>Kinds</name><multivalue><index>0</index><value><val>1</val>"
        "<valstring>Other</valstring></value><index>1</index><value><val>NULL</val></value>"
        "<index>2</index><value><val>2</val><valstring>Serial</valstring></value></multivalue>"
        "</property>"
        "<property><name>Owner</name><value><val>NULL</val></value></property>"
        "<property><name>Empty</name><multivalue></multivalue></property></properties>",
        shown(COutputer::CLPXML_FORM));
}

TEST(ShownAssociation, InKeywordFormHoldsItsOtherPropertiesAndLeavesItsOwnEndOut) {
    const ShownAssociation association = {"hostedservice",
                                          {{"Antecedent", "/admin1/system1", true},
                                           {"Weight", "5", false},
                                           {"Dependent", "/admin1/system1/svc2", true}}};
    EXPECT_EQ("begingroup=association\r\nufct=hostedservice\r\n"
              "begingroup=property\r\nproperty_name=Weight\r\nproperty_val=5\r\nendgroup\r\n"
              "begingroup=property\r\nproperty_name=Dependent\r\n"
              "property_val=/admin1/system1/svc2\r\nendgroup\r\nendgroup\r\n",
              bytesOf([&](Transport& transport) {
                  ShowForm::make(COutputer::KEYWORD_FORM, transport)
                      ->association(association, "/ADMIN1/system1");
              }));
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
    EXPECT_EQ("Disabled", name(number("3", {"2", "3"}, {"Enabled", "Disabled"})));
    EXPECT_FALSE(name(number("4", {"2", "3"}, {"Enabled", "Disabled"})));
    EXPECT_FALSE(name(number("3", {"2", "3"}, {"Enabled"}))) << "Values is shorter than ValueMap";
    EXPECT_FALSE(name(number("3", {}, {"Enabled", "Disabled"})));
    EXPECT_FALSE(name(number("3", {"2", "3"}, {})));
}

TEST(ShownValue, ThatIsNullIsCalledSo) {
    char* value = nullptr;
    char* name = nullptr;
    COutputer::SET_VALUE_VALUEMAP_STR(nullptr, nullptr, nullptr, &value, &name);
    EXPECT_STREQ("NULL", value);
    EXPECT_EQ(nullptr, name);
    std::free(value);
    fakecim::Data two(fakecim::number(CMPI_uint16, "2"));
    const CimArray map = fakecim::arrayOfTexts({"2"}), names = fakecim::arrayOfTexts({"Enabled"});
    COutputer::SET_VALUE_VALUEMAP_STR(&two.get(), names.get(), map.get(), &value, &name);
    EXPECT_STREQ("2", value);
    EXPECT_STREQ("Enabled", name);
    std::free(value);
    std::free(name);
}

TEST(ShownValue, CannotGiveOrdersToTheTerminal) {
    const OwnedPropValue value = propertyOf(fakecim::text("a\x1b[2Jb\x07\x7f\tc\xc3\xa4"));
    EXPECT_EQ("a?[2Jb??\tc\xc3\xa4", shownText(*value->data, nullptr, nullptr).value);
    const OwnedPropValue disguised =
        propertyOf(fakecim::text("a\xc2\x9bJ\xc2\xa9\rstatus=0\r\nb\r"));
    EXPECT_EQ("a?J\xc2\xa9?status=0\r\nb?", shownText(*disguised->data, nullptr, nullptr).value);
}

TEST(TextProperties, AreInTheOrderOfTheirNames) {
    std::map<std::string, PropValue*> properties;
    const OwnedPropValue kinds = numbers(), name = propertyOf(fakecim::text("x")),
                         empty = propertyOf(fakecim::null(CMPI_uint16A));
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

TEST(Paging, CutsTheTextFormAndTheTreeForm) {
    const struct {
        const char* options;
        long count;
        const char* text;
        const char* tree;
    } cases[] = {{"number=2-3", 5, "1-3", "1-3"},
                 {"number=1-99", 5, "0-5", "0-5"},
                 {"number=0-3", 5, "0-3", "0-3"},
                 {"number=6-9", 5, "5-5", "5-5"},
                 {"number=1-4", 0, "0-0", "0-0"},
                 {"begin,count=2", 5, "0-2", "0-2"},
                 {"count=9,begin", 5, "0-5", "0-5"},
                 {"end,count=2", 5, "3-5", "3-5"},
                 {"end,count=9", 5, "0-5", "0-5"},
                 {"begin", 5, "0-5", "0-5"},
                 {"end", 5, "0-5", "0-5"},
                 {"begin,count=99999999999999999999", 5, "0-5", "0-5"},
                 {"begin,count=all", 5, "0-5", "0-0"},
                 {"end,count=all", 5, "0-5", "5-5"},
                 {"count=3", 5, "0-3", "0-5"},
                 {"count=0", 5, "0-0", "0-5"},
                 {"count=all", 5, "0-5", "0-5"},
                 {"count=()", 5, "0-5", "0-5"}};
    const auto shownPage = [](const Page& page) {
        return std::to_string(page.start) + "-" + std::to_string(page.end);
    };
    for (const auto& c : cases) {
        const auto line = parsed("show -o " + std::string(c.options) + " system*");
        EXPECT_EQ(c.text, shownPage(textPage(*line, c.count))) << c.options;
        EXPECT_EQ(c.tree, shownPage(treePage(*line, c.count))) << c.options;
    }
}
