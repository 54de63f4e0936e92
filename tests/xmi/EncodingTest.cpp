#include "xmi/Encoding.h"

#include <gtest/gtest.h>

#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

LoadedMetamodel names() {
    return metamodelOf(eClass("A", attribute("name")));
}

/// A model whose one name is given in bytes of an encoding.
std::string model(const std::string& encoding, const std::string& name) {
    return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\n<p:A xmlns:p='urn:p' name='" +
           name + "'/>";
}

std::string utf16(const std::string& ascii, char16_t more, bool bigEndian) {
    std::u16string text(1, u'\uFEFF');
    for (const char character : ascii) {
        text += character == '?' && more != u'?' ? more : static_cast<char16_t>(character);
    }
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8U);
        const char low = static_cast<char>(unit & 0xFFU);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

std::string nameIn(const std::string& text) {
    return describe(modelOf(names(), text)).front();
}

TEST(Encoding, NamesAreReadInEveryEncodingSupported) {
    EXPECT_EQ(nameIn(model("UTF-8", "\xC3\xA9\xE2\x82\xAC")), "/ A name='\u00E9\u20AC'");
    EXPECT_EQ(nameIn("\xEF\xBB\xBF" + model("utf-8", "\xC3\xA9")), "/ A name='\u00E9'");
    EXPECT_EQ(nameIn(model("ISO-8859-1", "\xE9")), "/ A name='\u00E9'");
    EXPECT_EQ(nameIn(model("Cp1252", "\xE9\x80")), "/ A name='\u00E9\u20AC'");
    EXPECT_EQ(nameIn(model("windows-1252", "\x80")), "/ A name='\u20AC'");
    EXPECT_EQ(nameIn(model("ISO-8859-15", "\xA4")), "/ A name='\u20AC'");
    EXPECT_EQ(nameIn(model("windows-1251", "\xDF")), "/ A name='\u042F'");
    EXPECT_EQ(nameIn(model("Cp1250", "\xE8")), "/ A name='\u010D'");
    EXPECT_EQ(nameIn(model("ASCII", "e&#xE9;")), "/ A name='e\u00E9'");
}

/// Files are decoded piece by piece, and most pieces need no decoding.
TEST(Encoding, LongFilesAreDecodedThroughout) {
    std::string name(200'000, 'x');
    for (const std::size_t at : {0U, 65'000U, 131'000U, 199'999U}) name[at] = '\x80';
    std::string expected = name;
    for (std::size_t at; (at = expected.find('\x80')) != std::string::npos;) {
        expected.replace(at, 1, "\u20AC");
    }
    EXPECT_EQ(nameIn(model("Cp1252", name)), "/ A name='" + expected + "'");
    EXPECT_EQ(modelError(names(), model("Cp1252", name + "\x81")),
              "m.xmi:2:200028: not well-formed (invalid token)");
    EXPECT_EQ(modelError(names(), model("Cp1252", name) + "\n\x80<"),
              "m.xmi:3:1: not well-formed (invalid token)");
}

TEST(Encoding, IsTakenFromTheDeclarationWhereThatIsWhole) {
    EXPECT_EQ(declaredEncoding("<?xml version='1.0' encoding='a'?>"), "a");
    EXPECT_EQ(declaredEncoding("<?xml\tversion = \"1.1\"\n encoding\r=\t\"b-1._\" ?>"), "b-1._");
    EXPECT_EQ(declaredEncoding("<?xml version='1.0' encoding='c' standalone='no'?>"), "c");
    for (const char* const other :
         {"", "<a encoding='a'/>", "<?xml encoding='a'?>", "<?xml version='1.0'?>",
          "<?xml version='1.0'encoding='a'?>", "<?xml version='1.0' encoding='a\">",
          "<?xml version='1.0' encoding='a' standalone='maybe'?>",
          "<?xml version='1.0' encoding=a?>", "<?xml version='1.0' encoding='a'",
          "<?xml version='1.0' encoding='\xE9'?>", "<?xml version='1.0' encoding='a' x='y'?>",
          " <?xml version='1.0' encoding='a'?>"}) {
        EXPECT_EQ(declaredEncoding(other), "") << other;
    }
}

TEST(Encoding, Utf16IsReadInBothByteOrders) {
    for (const bool bigEndian : {false, true}) {
        EXPECT_EQ(nameIn(utf16("<p:A xmlns:p='urn:p' name='?'/>", u'\u20AC', bigEndian)),
                  "/ A name='\u20AC'");
    }
}

TEST(Encoding, CharactersBeyondTheBasicPlaneSurvive) {
    EXPECT_EQ(nameIn(model("UTF-8", "&#x1F680;")), "/ A name='\U0001F680'");
}

TEST(Encoding, UnknownEncodingsAndWrongBytesAreErrors) {
    const LoadedMetamodel metamodel = names();
    EXPECT_EQ(modelError(metamodel, model("EBCDIC-CP-US", "a")),
              "m.xmi:1:31: the encoding is not supported");
    EXPECT_EQ(modelError(metamodel, model("UTF-8", "\xE9")),
              "m.xmi:2:28: not well-formed (invalid token)");
    EXPECT_EQ(modelError(metamodel, model("ASCII", "\xE9")),
              "m.xmi:2:28: not well-formed (invalid token)");
}

TEST(Encoding, NamesOfEncodingsAreReadInAnyCaseAndSpelling) {
    EXPECT_EQ((*encodingTable("WINDOWS_1252"))[0x80], 0x20AC);
    EXPECT_EQ((*encodingTable("cp1252"))[0x81], -1);
    EXPECT_EQ((*encodingTable("us-ascii"))[0x7F], 0x7F);
    EXPECT_FALSE(encodingTable("UTF-7"));
    EXPECT_FALSE(encodingTable(""));
}

}  // namespace
}  // namespace nuv::zero::xmi::test
