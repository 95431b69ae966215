#include "tools/devserver/archive/query_parser.h"

#include <algorithm>

#include "tools/devserver/protocol/errors.h"
#include "tools/devserver/protocol/request.h"
#include "values/code_page.h"
#include "values/text_parts.h"

namespace oxaqrycln::devserver {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr int kDepthLimit = 32;
// The limit counts words rather than terms because each word of a phrase is looked up in the whole index, and "a*a*a*"
// is a single term.
constexpr std::size_t kWordLimit = 200;
constexpr std::size_t kByteLimit = 4096;

[[noreturn]] void Refuse(const std::string& text) { throw ServerError("Query: " + text); }

bool IsLetterOrDigit(char character) {
  const auto code = static_cast<unsigned char>(character);
  if (code >= 0xC0) return code != 0xD7 && code != 0xF7;
  return (character >= '0' && character <= '9') || UpperCase(character) != character ||
         (character >= 'A' && character <= 'Z');
}

// At least the number of words that the full-text index sees in the value: a character that may or may not be part of a
// word counts as a word.
std::size_t CountWords(std::string_view value) {
  std::size_t count = 0;
  bool inWord = false;
  for (const char character : value) {
    const bool isPart = IsLetterOrDigit(character);
    const bool isUnknown = !isPart && static_cast<unsigned char>(character) >= 0x80;
    if (isUnknown || (isPart && !inWord)) ++count;
    inWord = isPart;
  }
  return count;
}

bool IsBlank(char character) { return kBlanks.find(character) != std::string_view::npos; }

class QueryParser {
 public:
  QueryParser(std::string_view text, std::span<const QueryField> fields) : rest_(text), fields_(fields) {}

  std::string Whole() {
    std::string expression = Query();
    if (!AtEnd()) Refuse("')' without '('");
    return expression;
  }

  // After Whole: the values that are not excluded, each with its field.
  const std::string& marks() const noexcept { return marks_; }

 private:
  bool AtEnd() {
    rest_ = Trimmed(rest_, kBlanks);
    return rest_.empty();
  }

  bool Take(char character) {
    if (rest_.empty() || rest_.front() != character) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::string_view Word() const { return rest_.substr(0, rest_.find_first_of(" \t()\"")); }

  bool TakeOperator(std::string_view name) {
    if (AtEnd() || Word() != name) return false;
    rest_.remove_prefix(name.size());
    return true;
  }

  bool GroupGoesOn() { return !AtEnd() && rest_.front() != ')' && Word() != "OR"; }

  std::string Query() {
    std::string expression = Group();
    while (TakeOperator("OR")) expression += " OR " + Group();
    return expression;
  }

  // SQLite has only a binary NOT, so the excluded terms follow the wanted ones. There NOT binds more tightly than AND,
  // and AND more tightly than OR; "a AND (b NOT c)" finds the same as "(a AND b) NOT c".
  std::string Group() {
    std::string wanted;
    std::string excluded;
    do {
      const bool joined = TakeOperator("AND");
      if (joined && wanted.empty() && excluded.empty()) Refuse("AND needs a term on both sides");
      if (TakeOperator("NOT")) {
        ++exclusions_;
        excluded += " NOT " + Term();
        --exclusions_;
      } else {
        wanted += (wanted.empty() ? "" : " AND ") + Term();
      }
    } while (GroupGoesOn());
    if (wanted.empty()) Refuse("NOT needs a term to exclude from");
    return wanted + excluded;
  }

  std::string Term() {
    if (AtEnd()) Refuse("a term is missing at the end");
    if (rest_.front() == ')') Refuse("a term is missing before ')'");
    const std::string_view word = Word();
    if (word == "AND" || word == "OR" || word == "NOT") Refuse("a term is missing before " + std::string(word));
    const std::size_t colon = word.find(':');
    if (colon == std::string_view::npos) return Value("");
    const std::string named = LowerCase(word.substr(0, colon));
    const auto found = std::ranges::find_if(
        fields_, [&](const QueryField& each) { return each.name == named || (!each.id.empty() && each.id == named); });
    if (found == fields_.end()) {
      Refuse("there is no field '" + Printable(word.substr(0, colon)) + "' (fields are " + FieldNames() + ")");
    }
    const std::string field(found->name);
    rest_.remove_prefix(colon + 1);
    if (rest_.empty() || IsBlank(rest_.front()) || rest_.front() == ')') Refuse("field '" + field + "' has no value");
    return Value(field + " : ");
  }

  std::string FieldNames() const {
    std::string names;
    for (const QueryField& field : fields_) names.append(names.empty() ? "" : ", ").append(field.name);
    return names;
  }

  std::string Value(const std::string& filter) {
    if (Take('(')) {
      const std::string outer = filter_;
      filter_ += filter;
      std::string group = filter + Parentheses();
      filter_ = outer;
      return group;
    }
    const std::string value = Take('"') ? Phrase() : BareWord();
    // A value with two different fields, its own and that of the parentheses, finds nothing, so nothing is marked.
    const bool nested = !filter_.empty() && !filter.empty() && filter_ != filter;
    if (exclusions_ == 0 && !nested) {
      marks_.append(marks_.empty() ? "" : " OR ").append(filter_.empty() ? filter : filter_).append(value);
    }
    return filter + value;
  }

  std::string BareWord() {
    const std::string_view word = Word();
    rest_.remove_prefix(word.size());
    const bool prefix = word.ends_with('*');
    return Quoted(prefix ? word.substr(0, word.size() - 1) : word) + (prefix ? "*" : "");
  }

  std::string Parentheses() {
    if (++depth_ > kDepthLimit) Refuse("more than " + std::to_string(kDepthLimit) + " nested parentheses");
    std::string expression = Query();
    if (!Take(')')) Refuse("a ')' is missing");
    --depth_;
    return "(" + expression + ")";
  }

  std::string Phrase() {
    const std::size_t close = rest_.find('"');
    if (close == std::string_view::npos) Refuse("a closing '\"' is missing");
    const std::string_view phrase = rest_.substr(0, close);
    rest_.remove_prefix(close + 1);
    return Quoted(phrase) + (Take('*') ? "*" : "");
  }

  std::string Quoted(std::string_view value) {
    if (std::none_of(value.begin(), value.end(), IsLetterOrDigit)) {
      Refuse("'" + Printable(value) + "' contains no letter or digit");
    }
    wordCount_ += CountWords(value);
    if (wordCount_ > kWordLimit) Refuse("more than " + std::to_string(kWordLimit) + " words");
    return '"' + std::string(value) + '"';
  }

  std::string_view rest_;
  std::span<const QueryField> fields_;
  std::string marks_;
  std::string filter_;  // the field of the surrounding parentheses
  int exclusions_ = 0;  // the number of surrounding NOTs
  int depth_ = 0;
  std::size_t wordCount_ = 0;
};

// The query without surrounding blanks.
std::string_view Checked(std::string_view query) {
  if (query.size() > kByteLimit) {
    Refuse("it has " + std::to_string(query.size()) + " bytes, more than the " + std::to_string(kByteLimit) +
           " allowed");
  }
  const auto isControl = [](char character) {
    return static_cast<unsigned char>(character) < 0x20 && character != '\t';
  };
  if (std::ranges::any_of(query, isControl)) Refuse("it contains a control character");
  return Trimmed(query, kBlanks);
}

}  // namespace

std::string ParseQuery(std::string_view query, std::span<const QueryField> fields) {
  query = Checked(query);
  if (query.empty()) Refuse("it is empty ('*' finds every document)");
  if (query == "*") return {};
  return QueryParser(query, fields).Whole();
}

std::string MarkingExpression(std::string_view query) {
  query = Checked(query);
  if (query.empty() || query == "*") return {};
  QueryParser parser(query, kDocumentFields);
  parser.Whole();
  return parser.marks();
}

}  // namespace oxaqrycln::devserver
