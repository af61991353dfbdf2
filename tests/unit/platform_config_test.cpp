// The configuration store and the URI parser.
#include "config/aim_config.h"
#include "tests/support/run_directory.h"
#include "uri/uriparser.h"

#include <gtest/gtest.h>

namespace {

class ConfigurationStore : public testing::Test {
protected:
    bool load(const std::string& content) const {
        directory.write("console.conf", content);
        aim_config_use_file(directory.file("console.conf"));
        return aim_init_nocallback("SMCLP", 0x20000050, 2);
    }

    RunDirectory directory;
};

TEST_F(ConfigurationStore, ReadsTypedValues) {
    ASSERT_TRUE(load("# serial console\n\n ser_bool_console_enable = Yes \r\n"
                     "ser_int_console_timeout=300\nnegative=-5\nnegative=-6"));
    bool enabled = false;
    EXPECT_TRUE(aim_config_get_bool("ser_bool_console_enable", &enabled));
    EXPECT_TRUE(enabled);
    int number = 0;
    EXPECT_TRUE(aim_config_get_int("ser_int_console_timeout", &number));
    EXPECT_EQ(300, number);
    EXPECT_TRUE(aim_config_get_int("negative", &number));
    EXPECT_EQ(-6, number);
}

TEST_F(ConfigurationStore, LeavesTheValueAloneWhenTheKeyIsMissingOrOfAnotherType) {
    ASSERT_TRUE(
        load("word=maybe\nempty=\nbig=99999999999\ntail=12 s\nhex=0x10\n#off=true\nno sign\n"));
    bool flag = true;
    int number = 42;
    for (const char* key : {"word", "empty", "big", "tail", "hex", "off", "#off", "absent", ""}) {
        EXPECT_FALSE(aim_config_get_bool(key, &flag)) << key;
        EXPECT_FALSE(aim_config_get_int(key, &number)) << key;
    }
    EXPECT_FALSE(aim_config_get_int(nullptr, &number));
    EXPECT_TRUE(flag);
    EXPECT_EQ(42, number);
}

TEST_F(ConfigurationStore, DoesNotOpenWhatIsNoReadableFile) {
    aim_config_use_file(directory.file("absent.conf"));
    EXPECT_FALSE(aim_init_nocallback("SMCLP", 0, 0));
    aim_config_use_file(directory.path());
    EXPECT_FALSE(aim_init_nocallback("SMCLP", 0, 0));
    EXPECT_FALSE(load(std::string(100000, '#')));
    EXPECT_FALSE(aim_init_nocallback(nullptr, 0, 0));
}

TEST_F(ConfigurationStore, ForgetsTheOldValuesWhenItIsOpenedAgain) {
    ASSERT_TRUE(load("old=1\n"));
    ASSERT_TRUE(load("new=2\n"));
    int number = 0;
    EXPECT_FALSE(aim_config_get_int("old", &number));
    EXPECT_TRUE(aim_config_get_int("new", &number));
}

bool isUri(const char* text) {
    URIRecord record;
    if (URIParserInit() != 0)
        return false;
    const bool fine = URIParseString(&record, text) == 0;
    URIFree(&record);
    URIParserCleanup();
    return fine;
}

TEST(UriParser, TakesUrisWithAScheme) {
    for (const char* text :
         {"http://10.1.2.3/image.bin", "tftp://host:69/a/b%20c?d=e#f", "ftp://user:pw@[::1]/x",
          "file:///tmp/fw.img", "urn:a:b", "nfs:relative", "http:"})
        EXPECT_TRUE(isUri(text)) << text;
}

TEST(UriParser, RefusesTextWithoutASchemeOrWithForbiddenCharacters) {
    for (const char* text :
         {"", "/tmp/fw.img", "image.bin", "//host/path", "1http://host/", "http://host/a b",
          "http://[::1/", "http://host/%zz", ":no", "http://host/<x>", "ftp://h/\n"})
        EXPECT_FALSE(isUri(text)) << text;
    EXPECT_FALSE(isUri(nullptr));
    EXPECT_NE(0, URIParseString(nullptr, "http://host/"));
    URIFree(nullptr);
}

} // namespace
