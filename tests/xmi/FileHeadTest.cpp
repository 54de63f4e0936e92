#include "xmi/FileHead.h"

#include <gtest/gtest.h>

namespace nuv::zero::xmi {
namespace {

using Lines = std::vector<std::string>;

FileHead headOf(std::string_view text) {
    TextSource source(text);
    return FileHead::of(source);
}

TEST(FileHead, SaysWhatTheFirstTagSaysOfMetamodels) {
    const FileHead head = headOf(
        R"(<?xml version="1.0"?><!-- x --><xmi:XMI xmlns:xmi="http://www.omg.org/XMI"
           xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:a="urn:a" xmlns:b="urn:b"
           xmlns="urn:a" xsi:schemaLocation="urn:b b.ecore  urn:c ../c.ecore#/ urn:b two.ecore odd"
           ><d xmlns="urn:d"/></xmi:XMI>)");
    EXPECT_EQ(head.namespaces, (Lines{"urn:a", "urn:b"}));
    EXPECT_EQ(head.locationOf("urn:b"), "b.ecore");
    EXPECT_EQ(head.locationOf("urn:c"), "../c.ecore#/");
    EXPECT_EQ(head.locationOf("urn:a"), "");
}

TEST(FileHead, IsReadFromTheFrontOnly) {
    EXPECT_EQ(headOf("<a xmlns='urn:a'><b></a>").namespaces, Lines{"urn:a"});
}

TEST(FileHead, OfOtherTextsIsEmpty) {
    for (const char* text : {"", "text", "<a", "<a xmlns:b=''/>"}) {
        EXPECT_TRUE(headOf(text).namespaces.empty()) << text;
    }
}

}  // namespace
}  // namespace nuv::zero::xmi
