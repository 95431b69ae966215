#include "automation/method_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/error_of.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

using oxaqrycln::testing::ErrorOf;

// The names that clsQuery's header declares with one of the types and that one of the marks follows, in order.
std::vector<std::string> DeclaredNames(const std::vector<std::string>& types, std::string_view marks) {
  std::ifstream header(OXAQRYCLN_SOURCE_DIR "/component/clsQuery.h");
  std::vector<std::string> names;
  for (std::string line; std::getline(header, line);) {
    for (const std::string& type : types) {
      const std::string start = "  " + type + " ";
      const std::size_t end = line.find_first_of("(; ", start.size());
      const bool declares = line.starts_with(start) && end != std::string::npos;
      if (declares && marks.find(line[end]) != std::string_view::npos)
        names.push_back(line.substr(start.size(), end - start.size()));
    }
  }
  return names;
}

template <typename Entries>
std::vector<std::string> TableNames(const Entries& entries) {
  std::vector<std::string> names;
  for (const auto& entry : entries) names.emplace_back(entry.name);
  return names;
}

Variant CallMethod(clsQuery& query, std::string_view name, std::vector<Variant*> arguments) {
  const MethodEntry* const method = FindMethod(name);
  EXPECT_NE(method, nullptr) << name;
  return method == nullptr ? Variant(Missing) : method->call(query, arguments);
}

TEST(MethodTable, HoldsEveryPublicMemberInTheOrderOfItsDeclaration) {
  const auto methods = DeclaredNames({"Variant", "std::string", "bool", "void"}, "(");
  const auto variables = DeclaredNames({"std::int32_t", "std::string", "DateTime"}, "; ");
  ASSERT_FALSE(methods.empty());
  ASSERT_FALSE(variables.empty());
  EXPECT_THAT(TableNames(PublicMethods()), ::testing::ElementsAreArray(methods));
  EXPECT_THAT(TableNames(PublicVariables()), ::testing::ElementsAreArray(variables));
}

TEST(MethodTable, DescribesAMethodAsTheHeaderDoes) {
  const MethodEntry* const edit = FindMethod("TELOEditDocument");
  ASSERT_NE(edit, nullptr);
  EXPECT_EQ(edit->group, "Creating, editing, deleting");
  EXPECT_EQ(edit->signature, "TELOEditDocument(strImportFile, inout strDocIDVer, [out strParamStatus]) -> Variant");
  EXPECT_EQ(edit->result, ResultKind::Variant);
  EXPECT_THAT(edit->documentation, ::testing::HasSubstr("a new version of the document that strDocIDVer names"));
  std::vector<std::pair<std::string_view, ParameterKind>> parameters;
  for (const ParameterEntry& each : edit->parameters) parameters.emplace_back(each.name, each.kind);
  EXPECT_THAT(parameters, ::testing::ElementsAre(::testing::Pair("strImportFile", ParameterKind::In),
                                                 ::testing::Pair("strDocIDVer", ParameterKind::InOut),
                                                 ::testing::Pair("strParamStatus", ParameterKind::OptionalOut)));
}

TEST(MethodTable, NumbersVariablesAndMethodsInOneSeriesFromOne) {
  std::vector<int> numbers;
  for (const VariableEntry& variable : PublicVariables()) numbers.push_back(variable.number);
  for (const MethodEntry& method : PublicMethods()) numbers.push_back(method.number);
  std::vector<int> series(numbers.size());
  std::iota(series.begin(), series.end(), 1);
  EXPECT_THAT(numbers, ::testing::UnorderedElementsAreArray(series));
}

TEST(MethodTable, FindsNamesRegardlessOfLetterCase) {
  EXPECT_EQ(FindMethod("HELLOworld"), FindMethod("HelloWorld"));
  EXPECT_EQ(FindVariable("STRsessionid"), FindVariable("strSessionID"));
  EXPECT_EQ(FindMethod("HelloWorl"), nullptr);
  EXPECT_EQ(FindVariable(""), nullptr);
}

TEST(MethodTable, ChecksTheNumberOfArguments) {
  struct Case {
    const char* name;
    const char* method;
    std::vector<bool> given;  // false: a null pointer
    std::int32_t error;
  };
  const std::vector<Case> cases{
      {"required left out", "Encode", {}, 449},
      {"required is a null pointer", "Encode", {false}, 449},
      {"one of two required is missing", "TELOGetQueryFormatListInit", {true}, 449},
      {"one too many", "Encode", {true, true}, 450},
      {"one where none is allowed", "HelloWorld", {false}, 450},
      {"the fifth input of a query is required", "TELOQueryArchiveInit", {true, true, true, true}, 449},
      {"the sixth input of a query is optional", "TELOQueryArchiveInit", {true, true, true, true, true}, 0},
      {"an optional input left out after a given one", "WriteLog", {true, false}, 0},
      {"all outputs left out", "TELOGetChannelsNext", {}, 0},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    clsQuery query;
    Variant value("x");
    std::vector<Variant*> arguments;
    for (const bool isGiven : test.given) arguments.push_back(isGiven ? &value : nullptr);
    EXPECT_EQ(ErrorOf([&] { CallMethod(query, test.method, arguments); }), test.error);
  }
}

TEST(MethodTable, TreatsAMissingValueAsLeftOut) {
  clsQuery query;
  Variant missing(Missing);
  EXPECT_EQ(ErrorOf([&] { CallMethod(query, "Encode", {&missing}); }), error::kArgumentNotOptional);
}

TEST(MethodTable, WritesTheGivenOutputsAndReturnsEachKindOfResult) {
  clsQuery query;
  Variant channel(std::int32_t{5});
  Variant description(std::int32_t{6});
  // Without records the walk is at its end, and the outputs are set to "".
  EXPECT_EQ(CallMethod(query, "TELOGetAllArchivesExtNext", {nullptr, &description}), Variant::Integer(-1));
  EXPECT_EQ(description, Variant(""));
  EXPECT_EQ(CallMethod(query, "TELOGetAllArchivesExtNext", {&channel}), Variant::Integer(-1));
  EXPECT_EQ(channel, Variant(""));

  Variant text("zz");
  EXPECT_EQ(CallMethod(query, "Decode", {&text}), Variant(""));
  EXPECT_EQ(text, Variant("zz"));
  Variant no(false);
  EXPECT_EQ(CallMethod(query, "Init", {&no}), Variant(true));
  EXPECT_TRUE(CallMethod(query, "OnEndPage", {}).IsEmpty());
}

TEST(MethodTable, HasOneProperty) {
  for (const MethodEntry& method : PublicMethods()) EXPECT_EQ(method.isProperty, method.name == "RemoteHosts");
}

TEST(VariableTable, ConvertsAssignedValues) {
  struct Case {
    const char* name;
    const char* variable;
    Variant given;
    Variant held;
    std::int32_t error;
  };
  const DateTime login = DateTime::FromCivil({2026, 11, 15, 20, 31, 7});
  const std::vector<Case> cases{
      {"number", "lngRequestTimeout", Variant::Integer(7), Variant::Long(7), 0},
      {"text that spells a number", "lngRequestTimeout", " 1.5e1 ", Variant::Long(15), 0},
      {"half rounds to even", "lngRequestTimeout", 2.5, Variant::Long(2), 0},
      {"no number", "lngRequestTimeout", "soon", Variant::Long(0), error::kTypeMismatch},
      {"too large", "lngRequestTimeout", 3e9, Variant::Long(0), error::kOverflow},
      {"null number", "lngRequestTimeout", Variant::Null(), Variant::Long(0), error::kInvalidUseOfNull},
      {"number as text", "strSessionID", Variant::Long(12), "12", 0},
      {"truth as text", "strUserName", true, "True", 0},
      {"null text", "strUserName", Variant::Null(), "", error::kInvalidUseOfNull},
      {"date", "datUserLoginTime", login, login, 0},
      {"no date", "datUserLoginTime", "yesterday", DateTime(), error::kTypeMismatch},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    clsQuery query;
    const VariableEntry* const variable = FindVariable(test.variable);
    ASSERT_NE(variable, nullptr);
    EXPECT_EQ(ErrorOf([&] { variable->set(query, test.given); }), test.error);
    EXPECT_EQ(variable->get(query), test.held);
    EXPECT_EQ(variable->get(query).type(), variable->type);
  }
}

}  // namespace
}  // namespace oxaqrycln
