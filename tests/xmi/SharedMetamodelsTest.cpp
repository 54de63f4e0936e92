#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "model/memory/Text.h"
#include "tests/xmi/ReaderFixture.h"
#include "xmi/BuiltInEcore.h"
#include "xmi/EcoreReader.h"
#include "xmi/MetamodelSet.h"

/// The metamodels of others, each found by its namespace alone.
namespace nuv::zero::xmi::test {
namespace {

bool areSamplesThere() {
    return std::filesystem::exists(SHARED_MODELS);
}

std::vector<std::pair<std::string, std::string>> namespacesOfSamples() {
    std::vector<std::pair<std::string, std::string>> rows;
    std::ifstream table(SHARED_MODELS "/NSURI.tsv");
    for (std::string line; std::getline(table, line);) {
        const std::size_t first = line.find('\t');
        const std::size_t last = line.rfind('\t');
        if (first == std::string::npos || !line.ends_with(".ecore")) continue;
        rows.emplace_back(line.substr(0, first), line.substr(last + 1));
    }
    return rows;
}

TEST(SharedMetamodels, AreFoundAloneByTheirNamespaces) {
    if (!areSamplesThere()) GTEST_SKIP() << "needs the optional sample models";
    FileRoots roots;
    roots.add("models", SHARED_MODELS);
    const auto rows = namespacesOfSamples();
    ASSERT_GT(rows.size(), 80U);
    MetamodelSet set(roots);
    Lines missing;
    for (const auto& [nsUri, file] : rows) {
        // Made by its authors to be refused.
        const bool isBad = file.ends_with("Bad.ecore");
        if (set.provide(nsUri, {}, {0, file}) == isBad) missing.push_back(nsUri + " in " + file);
    }
    EXPECT_EQ(missing, Lines{});
    Lines findings;
    for (const Finding& each : set.takeFindings()) findings.push_back(each.text());
    EXPECT_EQ(findings,
              (Lines{"models:emf/org.eclipse.emf.test.core/data/Bad.ecore:19:5: cannot be read as "
                     "a metamodel: the classifier has no name"}));
}

TEST(SharedMetamodels, BuiltInEcoreIsThatOfTheFile) {
    if (!areSamplesThere()) GTEST_SKIP() << "needs the optional sample models";
    const LoadedMetamodel file =
        EcoreReader().addFile(SHARED_MODELS "/emf/org.eclipse.emf.ecore/model/Ecore.ecore").read();
    const LoadedMetamodel own = EcoreReader().addText("Ecore.ecore", builtInEcoreText()).read();
    EXPECT_EQ(describe(own), describe(file));
    for (const meta::Class& type : file.classes()) {
        const std::string name = text::toUtf8(type->getName());
        const meta::Class other = own.findClass(ecoreNamespace, name);
        ASSERT_TRUE(other) << name;
        for (const memory::PropertyObject& each : type->ownProperties()) {
            const FeatureDeclaration& expected = file.declaration(meta::Property(&each));
            const FeatureDeclaration& found = own.declaration(other->getProperty(each.getName()));
            const std::string which = name + "." + text::toUtf8(each.getName());
            EXPECT_EQ(found.defaultText, expected.defaultText) << which;
            EXPECT_EQ(found.lowerBound, expected.lowerBound) << which;
            EXPECT_EQ(found.isTransient, expected.isTransient) << which;
            EXPECT_EQ(found.isUnsettable, expected.isUnsettable) << which;
        }
    }
}

}  // namespace
}  // namespace nuv::zero::xmi::test
