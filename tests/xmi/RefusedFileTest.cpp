#include <gtest/gtest.h>

#include "tests/xmi/ReaderFixture.h"

namespace nuv::zero::xmi::test {
namespace {

// Symptom: after a file had been refused, the same namespace in a correct file was "given twice".
TEST(RefusedFile, LeavesTheMetamodelReaderAsItWas) {
    EcoreReader reader;
    reader.addText("a.ecore", package(eClass("A")));
    const std::string other =
        R"(<ecore:EPackage xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" name="o" nsURI="urn:o"
            xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">)";
    const std::string named = R"(<eClassifiers xsi:type="ecore:EClass" name="B"/>)";
    const std::string nameless = R"(<eClassifiers xsi:type="ecore:EClass"/>)";
    EXPECT_EQ(
        errorOf([&] { reader.addText("o.ecore", other + named + nameless + "</ecore:EPackage>"); }),
        "o.ecore:2:115: the classifier has no name");
    reader.addText("o.ecore", other + named + "</ecore:EPackage>");
    EXPECT_EQ(describe(reader.read()), (Lines{"p::A", "o::B"}));
}

}  // namespace
}  // namespace nuv::zero::xmi::test
