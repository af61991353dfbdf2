// Paths, instances and arguments of the CIM client, which need no server.
#include "clientfixture.h"

using namespace velmora_clp;

namespace {

CMPIValue number(CMPIUint32 value) {
    CMPIValue made{};
    made.uint32 = value;
    return made;
}

class Paths : public testing::Test {
protected:
    CMPIrc add(const char* key, CMPIValue* value, CMPIType type) {
        return path->ft->addKey(path.get(), key, value, type).rc;
    }
    std::string key(const char* name) {
        return show(path->ft->getKey(path.get(), name, status.out()));
    }
    CimStatus status;
    CimPath path = newPath("root/cimv2", "CIM_Thing");
};

TEST_F(Paths, AreWrittenWithBareNumbersAndEverythingElseInQuotes) {
    CMPIValue value = number(7);
    CMPIValue yes{};
    yes.boolean = 1;
    const CimPath other = newPath("root/x", "CIM_Ref");
    addTextKey(other.get(), "K", "v");
    CMPIValue reference{};
    reference.ref = other.get();
    add("Name", chars("a\"b\\c"), CMPI_chars);
    add("N", &value, CMPI_uint32);
    add("B", &yes, CMPI_boolean);
    add("Ref", &reference, CMPI_ref);
    EXPECT_EQ(show(path.get()), "root/cimv2:CIM_Thing.Name=\"a\"b\\c\",N=7,B=\"true\","
                                "Ref=\"root/x:CIM_Ref.K=\"v\"\"");
    path->ft->setNameSpace(path.get(), "");
    EXPECT_EQ(show(path.get()).substr(0, 10), "CIM_Thing.");
    path->ft->setClassName(path.get(), nullptr);
    EXPECT_EQ(path->ft->toString(path.get(), status.out()), nullptr);
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(Paths, KnowAKeyInAnyCaseAndTakeItOnce) {
    CMPIValue value = number(7);
    EXPECT_EQ(add("Name", chars("x"), CMPI_chars), CMPI_RC_OK);
    EXPECT_EQ(add("NAME", &value, CMPI_uint32), CMPI_RC_ERR_ALREADY_EXISTS);
    EXPECT_EQ(key("name"), "1600/0200 'x'");
    EXPECT_EQ(path->ft->getKeyCount(path.get(), nullptr), 1U);
}

TEST_F(Paths, SayWhichKeysAreNotThereAndLeaveTheNameAlone) {
    for (const char* unknown : {"Other", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(key(unknown), "0000/0100 null");
        EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    }
    CMPIString* untouched = nullptr;
    path->ft->getKeyAt(path.get(), 0, &untouched, status.out());
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(untouched, nullptr);
}

TEST_F(Paths, TakeKeysWithoutAValueAsTheirTypeAllows) {
    EXPECT_EQ(add("Number", nullptr, CMPI_uint16), CMPI_RC_OK);
    EXPECT_EQ(add("Nothing", nullptr, CMPI_null), CMPI_RC_OK);
    EXPECT_EQ(add("Text", nullptr, CMPI_chars), CMPI_RC_OK);
    EXPECT_EQ(add("Object", nullptr, CMPI_ref), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(add(nullptr, nullptr, CMPI_uint16), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(key("Number"), "0090/0200 0");
    EXPECT_EQ(key("Nothing"), "0000/0100 null");
    EXPECT_EQ(key("Text"), "1600/0200 no text");
}

TEST_F(Paths, TellAMissingNameSpaceFromAnEmptyOneAndKnowNoHost) {
    const auto nameSpace = [this] {
        return CimString(path->ft->getNameSpace(path.get(), status.out()));
    };
    path->ft->setNameSpace(path.get(), nullptr);
    EXPECT_EQ(nameSpace()->hdl, nullptr);
    path->ft->setNameSpace(path.get(), "");
    EXPECT_STREQ(CMGetCharPtr(nameSpace()), "");
    const CimPath source = newPath("root/other", "CIM_Other");
    path->ft->setNameSpaceFromObjectPath(path.get(), source.get());
    EXPECT_EQ(show(path.get()), "root/other:CIM_Thing");
    EXPECT_EQ(path->ft->setHostname(path.get(), "host").rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(path->ft->getHostname(path.get(), status.out()), nullptr);
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(Paths, AreClonedWithTheirKeysInOrder) {
    addTextKey(path.get(), "B", "1");
    addTextKey(path.get(), "A", "2");
    const CimPath copy(CMClone(path.get(), status.out()));
    addTextKey(path.get(), "C", "3");
    EXPECT_EQ(show(copy.get()), "root/cimv2:CIM_Thing.B=\"1\",A=\"2\"");
    EXPECT_EQ(path->ft->release(nullptr).rc, CMPI_RC_ERR_FAILED);
}

class Instances : public testing::Test {
protected:
    Instances() {
        CimPath path = newPath("root/cimv2", "CIM_Thing");
        for (const char* key : {"A", "B", "C"})
            addTextKey(path.get(), key, "k");
        instance.reset(native_new_CMPIInstance(path.get(), nullptr));
    }
    void set(const char* property, const char* text) {
        EXPECT_EQ(instance->ft->setProperty(instance.get(), property, chars(text), CMPI_chars).rc,
                  CMPI_RC_OK);
    }
    std::string get(const char* property) {
        return show(instance->ft->getProperty(instance.get(), property, status.out()));
    }
    std::string path() {
        return show(CimPath(instance->ft->getObjectPath(instance.get(), nullptr)).get());
    }
    CimStatus status;
    CimInstance instance;
};

TEST_F(Instances, HaveTheKeysOfTheirPathInReverseAndGiveThePathBack) {
    set("P", "v");
    EXPECT_EQ(show(instance.get()), "C=1600/0200 'k'\nB=1600/0200 'k'\nA=1600/0200 'k'\n"
                                    "P=1600/0000 'v'\n");
    EXPECT_EQ(path(), "root/cimv2:CIM_Thing.A=\"k\",B=\"k\",C=\"k\"");
    const CimInstance empty(native_new_CMPIInstance(nullptr, nullptr));
    EXPECT_EQ(show(empty.get()), "");
}

TEST_F(Instances, ReplacePropertiesInAnyCaseAndKeepKeysKeys) {
    CMPIValue value = number(4294967295);
    instance->ft->setProperty(instance.get(), "b", &value, CMPI_uint32);
    set("P", "one");
    set("p", "two");
    EXPECT_EQ(get("B"), "00a0/0200 4294967295");
    EXPECT_EQ(get("P"), "1600/0000 'two'");
    EXPECT_EQ(instance->ft->getPropertyCount(instance.get(), nullptr), 4U);
}

TEST_F(Instances, SetToNullLoseTheirValueAndGetItBackWithTheNextOne) {
    for (const char* property : {"B", "P"})
        instance->ft->setProperty(instance.get(), property, nullptr, CMPI_uint16);
    EXPECT_EQ(get("B"), "0090/0100 null");
    EXPECT_EQ(get("P"), "0090/0100 null");
    EXPECT_EQ(path(), "root/cimv2:CIM_Thing.A=\"k\",C=\"k\"");
    set("B", "again");
    set("P", "again");
    EXPECT_EQ(get("B"), "1600/0200 'again'");
    EXPECT_EQ(get("P"), "1600/0000 'again'");
}

TEST_F(Instances, SayWhatTheyDoNotHave) {
    EXPECT_EQ(get("Other"), "0000/0100 null");
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    instance->ft->getPropertyAt(instance.get(), 3, nullptr, status.out());
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    instance->ft->getQualifier(instance.get(), "Q", status.out());
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_FAILED);
    instance->ft->getQualifierAt(instance.get(), 0, nullptr, status.out());
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(instance->ft->getPropertyQualifierCount(instance.get(), "Other", status.out()), 0U);
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    instance->ft->getProperty(instance.get(), nullptr, status.out());
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(Instances, WithAFilterDropOtherPropertiesAlsoInAClone) {
    char p[] = "P", a[] = "A";
    char* properties[] = {p, nullptr};
    char* keys[] = {a, nullptr};
    instance->ft->setPropertyFilter(instance.get(), properties, keys);
    instance.reset(CMClone(instance.get(), nullptr));
    EXPECT_FALSE(CMIsNullObject(instance.get()));
    set("p", "kept");
    set("A", "kept");
    set("Q", "dropped");
    EXPECT_EQ(show(instance.get()), "C=1600/0200 'k'\nB=1600/0200 'k'\nA=1600/0200 'kept'\n"
                                    "p=1600/0000 'kept'\n");
}

TEST_F(Instances, FindTheirPropertiesQuicklyWhenThereAreManyOfThem) {
    for (int i = 0; i < 60000; ++i) {
        CMPIValue value = number(static_cast<CMPIUint32>(i));
        const std::string property = "Property" + std::to_string(i);
        instance->ft->setProperty(instance.get(), property.c_str(), &value, CMPI_uint32);
    }
    EXPECT_EQ(get("PROPERTY59999"), "00a0/0000 59999");
    EXPECT_EQ(get("c"), "1600/0200 'k'");
    EXPECT_EQ(CimInstance(CMClone(instance.get(), nullptr))
                  ->ft->getPropertyCount(instance.get(), nullptr),
              60003U);
}

TEST(Arguments, KeepOrderAndTypeAndEachNameOnce) {
    const CimArgs args(native_new_CMPIArgs(nullptr));
    CimStatus status;
    const CimArray words(native_new_CMPIArray(1, CMPI_string, nullptr));
    CMPIValue array{}, none{};
    array.array = words.get();
    const auto add = [&](const char* name, CMPIValue* value, CMPIType type) {
        return args->ft->addArg(args.get(), name, value, type).rc;
    };
    EXPECT_EQ(add("Words", &array, CMPI_stringA), CMPI_RC_OK);
    EXPECT_EQ(add("Text", chars("x"), CMPI_chars), CMPI_RC_OK);
    EXPECT_EQ(add("TEXT", chars("y"), CMPI_chars), CMPI_RC_ERR_ALREADY_EXISTS);
    EXPECT_EQ(add("Number", nullptr, CMPI_uint16), CMPI_RC_OK);
    EXPECT_EQ(add("Nothing", nullptr, CMPI_null), CMPI_RC_OK);
    EXPECT_EQ(add("NoString", &none, CMPI_string), CMPI_RC_OK);
    EXPECT_EQ(add("NoValue", nullptr, CMPI_string), CMPI_RC_ERR_INVALID_PARAMETER);
    const CimArgs copy(CMClone(args.get(), nullptr));
    EXPECT_EQ(show(copy.get()), "Words=3600/0000 [1600/0100 null]\nText=1600/0000 'x'\n"
                                "Number=0090/0000 0\nNothing=0000/0100 null\n"
                                "NoString=1600/0000 no text\n");
    EXPECT_EQ(show(args->ft->getArg(args.get(), "other", status.out())), "0000/0100 null");
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

} // namespace
