// What the CIM client makes of classes.
#include "clientfixture.h"

using namespace velmora_clp;

namespace {

class ClassReplies : public WithServer {
protected:
    ClassReplies() {
        server.returns(
            "<CLASS NAME=\"C\" SUPERCLASS=\"B\">"
            "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>Un &amp; "
            "known</VALUE></QUALIFIER>"
            "<PROPERTY NAME=\"P\" TYPE=\"uint16\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\">"
            "<VALUE>TRUE</VALUE></QUALIFIER><QUALIFIER NAME=\"Values\" "
            "TYPE=\"string\"><VALUE.ARRAY>"
            "<VALUE>a&lt;b</VALUE><VALUE/></VALUE.ARRAY></QUALIFIER>"
            "<QUALIFIER NAME=\"Bare\" TYPE=\"boolean\"/><VALUE>5</VALUE></PROPERTY>"
            "<PROPERTY.ARRAY NAME=\"A\" TYPE=\"string\"/>"
            "<PROPERTY.REFERENCE NAME=\"R\" REFERENCECLASS=\"C\"/>"
            "<METHOD NAME=\"M\" TYPE=\"uint32\">"
            "<QUALIFIER NAME=\"ValueMap\" "
            "TYPE=\"string\"><VALUE.ARRAY><VALUE>0</VALUE></VALUE.ARRAY>"
            "</QUALIFIER>"
            "<PARAMETER NAME=\"In\" TYPE=\"uint16\"><QUALIFIER NAME=\"IN\" TYPE=\"boolean\">"
            "<VALUE>TRUE</VALUE></QUALIFIER></PARAMETER>"
            "<PARAMETER.ARRAY NAME=\"Words\" TYPE=\"string\"/>"
            "<PARAMETER.REFERENCE NAME=\"Ref\" REFERENCECLASS=\"C\"/>"
            "<PARAMETER.REFARRAY NAME=\"Refs\" REFERENCECLASS=\"C\"/></METHOD>"
            "<METHOD NAME=\"V\"/></CLASS>");
        cls.reset(table().getClass(c(), op(), CMPI_FLAG_IncludeQualifiers, nullptr, rc()));
        if (cls)
            cls.reset(CMClone(cls.get(), nullptr));
    }
    CimClass cls;
};

TEST_F(ClassReplies, GiveTypesWithoutValuesAndQualifiersWithThem) {
    ASSERT_TRUE(cls) << status.message();
    const auto prop = [this](const char* p) {
        return show(cls->ft->getProperty(cls.get(), p, nullptr));
    };
    EXPECT_EQ(cimText(CimString(CMGetClassName(cls.get(), nullptr)).get()), "C");
    EXPECT_EQ(prop("p"), "0090/0100 null");
    EXPECT_EQ(prop("A"), "3600/0100 null");
    EXPECT_EQ(prop("R"), "1100/0100 null");
    EXPECT_EQ(cls->ft->getPropertyCount(cls.get(), nullptr), 3U);
    EXPECT_EQ(show(cls->ft->getQualifier(cls.get(), "description", nullptr)),
              "1600/0000 'Un & known'");
    const auto qualifier = [this](const char* q) {
        return show(cls->ft->getPropertyQualifier(cls.get(), "P", q, nullptr));
    };
    EXPECT_EQ(qualifier("KEY"), "0002/0000 true");
    EXPECT_EQ(qualifier("Values"), "3600/0000 [1600/0000 'a<b', 1600/0100 null]");
    EXPECT_EQ(qualifier("Bare"), "0002/0100 null");
    EXPECT_EQ(cls->ft->getPropertyQualifierCount(cls.get(), "P", nullptr), 3U);
    EXPECT_EQ(cls->ft->getPropertyQualifierCount(cls.get(), "A", nullptr), 0U);
}

TEST_F(ClassReplies, GiveMethodsWithTheirParameters) {
    ASSERT_TRUE(cls) << status.message();
    EXPECT_EQ(show(cls->ft->getMethod(cls.get(), "m", nullptr)), "00a0/0100 null");
    EXPECT_EQ(show(cls->ft->getMethod(cls.get(), "V", nullptr)), "0000/0100 null");
    EXPECT_EQ(cls->ft->getMethodCount(cls.get(), nullptr), 2U);
    EXPECT_EQ(show(cls->ft->getMethodQualifier(cls.get(), "M", "ValueMap", nullptr)),
              "3600/0000 [1600/0000 '0']");
    std::string parameters;
    for (unsigned i = 0; i < cls->ft->getMethodParameterCount(cls.get(), "M", nullptr); ++i) {
        CMPIString* named = nullptr;
        const CMPIData data = cls->ft->getMethodParameterAt(cls.get(), "M", i, &named, nullptr);
        char type[8];
        std::snprintf(type, sizeof type, "%04x", data.type);
        parameters += cimText(CimString(named).get()) + " " + type + "\n";
        EXPECT_EQ(data.state, CMPI_goodValue);
    }
    EXPECT_EQ(parameters, "In 0090\nWords 3600\nRef 1100\nRefs 3100\n");
}

TEST_F(ClassReplies, SayWhatIsMissingWithTheCodeOfEachList) {
    ASSERT_TRUE(cls) << status.message();
    CMPIConstClass* c = cls.get();
    const auto code = [this](const CMPIData& data) {
        EXPECT_EQ(show(data), "0000/0100 null");
        return static_cast<int>(status.rc());
    };
    EXPECT_EQ(code(c->ft->getProperty(c, "x", rc())), 12);
    EXPECT_EQ(code(c->ft->getPropertyAt(c, 3, nullptr, rc())), 12);
    EXPECT_EQ(code(c->ft->getQualifier(c, "x", rc())), 1);
    EXPECT_EQ(code(c->ft->getQualifierAt(c, 1, nullptr, rc())), 12);
    EXPECT_EQ(code(c->ft->getPropertyQualifier(c, "P", "x", rc())), 1);
    EXPECT_EQ(code(c->ft->getPropertyQualifier(c, "x", "Key", rc())), 12);
    EXPECT_EQ(code(c->ft->getMethod(c, "x", rc())), 1);
    EXPECT_EQ(code(c->ft->getMethodAt(c, 2, nullptr, rc())), 17);
    EXPECT_EQ(code(c->ft->getMethodParameter(c, "M", "x", rc())), 1);
    EXPECT_EQ(code(c->ft->getMethodParameterAt(c, "M", 4, nullptr, rc())), 6);
    EXPECT_EQ(code(c->ft->getMethodParameter(c, "x", "In", rc())), 17);
    EXPECT_EQ(code(c->ft->getMethodQualifier(c, "x", "Q", rc())), 17);
    EXPECT_EQ(c->ft->getMethodParameterCount(c, "x", rc()), 0U);
    EXPECT_EQ(status.rc(), 17);
}

TEST_F(ClassReplies, InAListAreClonedWithTheList) {
    server.returns("<CLASS NAME=\"A\"/><CLASS NAME=\"B\"/>");
    CimEnumeration list(table().enumClasses(c(), op(), 0, rc()));
    ASSERT_TRUE(list) << status.message();
    list.reset(CMClone(list.get(), nullptr));
    std::string classes;
    while (CMHasNext(list.get(), nullptr)) {
        CMPIConstClass* c = CMGetNext(list.get(), nullptr).value.cls;
        classes += cimText(CimString(CMGetClassName(c, nullptr)).get());
    }
    EXPECT_EQ(classes, "AB");
}

} // namespace
