// Names in the build and print syntax, one way and back.
#include "cli/NamedText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using cli::Vocabulary;
using ::testing::HasSubstr;

Vocabulary Words() {
    cli::Suite suite;
    cli::ClassTerm disc;
    disc.name = "disc";
    disc.code = 'Disc';
    disc.properties = {{"name", 'pnam', {}}, {"the form", 'form', {}}, {"volume size", 'vsiz', {}}};
    suite.classes = {disc};
    cli::EventTerm event;
    event.name = "write";
    event.eventClass = 'Test';
    event.code = 'wrIt';
    event.parameters = {{"gently", 'gent', {}}, {"each", 'kocl', {}}};
    suite.events = {event};
    const cli::Term doubt{"in doubt", "", 'doub'}, done{"done", "", 'Done'};
    suite.enumerations = {{'mood', {doubt, done}, ""}};
    return {"Writer", {suite}};
}

std::string Named(const std::string& inText) {
    return cli::WithNames(inText, Words(), nullptr);
}

std::string Coded(const std::string& inText) {
    const Vocabulary words = Words();
    return cli::WithCodes(inText, words, words.FindEvent("write")).text;
}

TEST(NamedText, NamesStandBehindTheCodesThatHaveSome) {
    EXPECT_EQ(Named("'Disc'{ 'pnam':\"x\", 'xxxx':'Done' }"),
              "'Disc'<disc>{ 'pnam'<name>:\"x\", 'xxxx':'Done'<done> }");
    EXPECT_EQ(Named("'type'('vsiz')"), "'type'('vsiz'<volume size>)");
}

TEST(NamedText, TextsAndDataStayAsTheyAre) {
    const std::string text = "[ \"'Disc'\", 'TEXT'($27446973$), '$00000001$' ]";
    EXPECT_EQ(Named(text), text);
}

TEST(NamedText, SyntaxOfObjectsIsNobodysProperty) {
    EXPECT_EQ(Named("'obj '{ 'want':'type'('Disc'), 'from':null(), 'form':'form', 'seld':1 }"),
              "'obj '{ 'want':'type'('Disc'<disc>), 'from':null(), 'form':'form', 'seld':1 }");
    EXPECT_EQ(Named("{ 'form':1 }"), "{ 'form'<the form>:1 }");
}

TEST(NamedText, ParametersAreThoseOfTheEvent) {
    const Vocabulary words = Words();
    EXPECT_EQ(cli::WithNames("{ 'gent':{ 'gent':1, 'pnam':2 }, 'pnam':3 }", words,
                             words.FindEvent("write")),
              "{ 'gent'<gently>:{ 'gent':1, 'pnam'<name>:2 }, 'pnam':3 }");
}

TEST(NamedText, WhatIsShownIsReadBackAsItWas) {
    for (const std::string text :
         {"'Disc'{ 'pnam':\"x<name>\", 'xxxx':'Done' }", "[ 'doub', 'enum'('Done') ]",
          "'obj '{ 'want':'type'('prop'), 'from':null(), 'form':'prop', 'seld':'type'('vsiz') }"}) {
        EXPECT_NE(Named(text), text);
        EXPECT_EQ(Coded(Named(text)), text);
    }
}

TEST(NamedText, NamesStandInPlaceOfCodes) {
    EXPECT_EQ(Coded("gently: true(), each: type(disc)"), "'gent': true(), 'kocl': type('Disc')");
    EXPECT_EQ(Coded("data: { <volume size>: <in doubt>, name: done }"),
              "data: { 'vsiz': 'doub', 'pnam': 'Done' }");
    EXPECT_EQ(Coded("'----': obj { want: type(disc), from: null(), form: name, seld: \"each\" }"),
              "'----': obj { want: type('Disc'), from: null(), form: name, seld: \"each\" }");
}

TEST(NamedText, TypesAndComparisonsAreCodes) {
    for (const std::string text :
         {"doub(\"2.5\")", "a: <, b: >=, c: <=", "cmpd { relo: <, obj1: 1, obj2: 2 }", "shor(3)",
          "", "<", "< a >", "obj { form: name }"})
        EXPECT_EQ(Coded(text), text);
}

TEST(NamedText, PlaceOfEveryCharacterIsKnown) {
    const Vocabulary words = Words();
    const cli::CodedText coded = cli::WithCodes("\xC3\xA9: <volume size>, x", words, nullptr);
    EXPECT_EQ(coded.text, "\xC3\xA9: 'vsiz', x");
    EXPECT_EQ(coded.PlaceOf(3), 3u);
    EXPECT_EQ(coded.PlaceOf(8), 3u);
    EXPECT_EQ(coded.PlaceOf(9), 16u);
    EXPECT_EQ(coded.PlaceOf(1000), 19u);
}

TEST(NamedText, UnknownNameTellsItsPlace) {
    try {
        Coded("gently: <disk>");
        FAIL();
    } catch (const cli::UnknownName& unknown) {
        EXPECT_EQ(unknown.Place(), 8u);
        EXPECT_THAT(unknown.what(), HasSubstr("'disc'"));
    }
}

TEST(NamedText, WithoutADictionaryWordsStayAndBracketsAreRefused) {
    EXPECT_EQ(cli::WithCodes("gently: 1", Vocabulary(), nullptr).text, "gently: 1");
    EXPECT_EQ(cli::WithNames("'Disc'", Vocabulary(), nullptr), "'Disc'");
    EXPECT_THROW(cli::WithCodes("<disc>", Vocabulary(), nullptr), cli::UnknownName);
}

TEST(NamedText, UnfinishedTextIsTakenToItsEnd) {
    for (const std::string text : {"'Dis", "\"abc", "$41", "{[(", "}])", "'Disc <nam", "'"}) {
        EXPECT_EQ(Named(text), text);
        EXPECT_NO_THROW(cli::WithCodes(text, Vocabulary(), nullptr)) << text;
    }
}

}  // namespace
