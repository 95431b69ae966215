// The functions for rows: a whole list in one call.
#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "automation/c/queries.h"
#include "automation/c/values.h"
#include "values/code_page.h"

using namespace oxaqrycln;
using namespace oxaqrycln::c;

void TextBlock::Add(std::string_view text, bool isUtf8) {
  const std::size_t room = isUtf8 ? Utf8Room(text.size()) : text.size();
  if (room > capacity_ - size_) Grow(room);
  if (isUtf8) {
    size_ += WriteUtf8(text, bytes_.get() + size_);
  } else {
    std::copy_n(text.data(), text.size(), bytes_.get() + size_);
    size_ += text.size();
  }
}

void TextBlock::Grow(std::size_t room) {
  constexpr std::size_t kFirst = 65536;
  const std::size_t capacity = std::max(kFirst, 2 * capacity_) + room;
  auto bytes = std::make_unique_for_overwrite<char[]>(capacity);
  std::copy_n(bytes_.get(), size_, bytes.get());
  bytes_ = std::move(bytes);
  capacity_ = capacity;
}

Rows::Rows(std::shared_ptr<RowMemory> spare) : memory_(std::exchange(*spare, {})), spare_(std::move(spare)) {
  memory_.block.Clear();
  memory_.offsets.assign(1, 0);
}

Rows::~Rows() {
  constexpr std::size_t kMostKept = std::size_t{1} << 20U;
  const std::size_t held = memory_.block.capacity() + memory_.offsets.capacity() * sizeof(std::uint32_t);
  if (held <= kMostKept) *spare_ = std::move(memory_);
}

void Rows::Add(std::string_view text, bool isUtf8) {
  memory_.block.Add(text, isUtf8);
  if (memory_.block.size() > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  memory_.offsets.push_back(static_cast<std::uint32_t>(memory_.block.size()));
}

namespace {

// What a caller asks for.
struct Wanted {
  const MethodEntry& method;
  std::int32_t max;
  std::span<const std::int32_t> columns;
  bool everyRow;
  bool isUtf8;
};

// The outputs of the method, of which the columns are some.
class RowReader {
 public:
  RowReader(Query& query, const Wanted& wanted, Rows& rows)
      : query_(query), wanted_(wanted), rows_(rows), pointers_(wanted.method.parameters.size()) {
    for (const std::int32_t column : wanted.columns)
      outputs_.push_back({static_cast<std::size_t>(column), Variant("")});
    for (Output& output : outputs_) pointers_[output.position] = &output.value;
    rows_.columnCount = static_cast<std::int32_t>(wanted.columns.size()) + 1;
    constexpr std::size_t kUsualRows = 1024;
    rows_.Reserve(std::min(static_cast<std::size_t>(wanted.max), kUsualRows) * (outputs_.size() + 1));
  }

  void ReadAll() {
    while (rows_.rowCount < wanted_.max) {
      Variant result = wanted_.method.call(query_.instance(), pointers_);
      const bool isOver = query_.watch().LastError().number != 0 || (!wanted_.everyRow && IsEnd(result));
      if (!isOver) AddRow(result);
      query_.Reuse(result);
      if (isOver) break;
    }
  }

 private:
  struct Output {
    std::size_t position;
    Variant value;
  };

  bool IsEnd(const Variant& result) {
    return result.type() == Variant::Type::String ? result.TextView(scratch_).empty() : result.ToLong() < 0;
  }

  void AddRow(const Variant& result) {
    Add(result);
    for (const Output& output : outputs_) Add(output.value);
    ++rows_.rowCount;
  }

  void Add(const Variant& value) { rows_.Add(value.TextView(scratch_), wanted_.isUtf8); }

  Query& query_;
  const Wanted& wanted_;
  Rows& rows_;
  std::vector<Output> outputs_;
  std::vector<Variant*> pointers_;
  std::string scratch_;
};

std::int32_t CheckColumns(const MethodEntry& method, std::span<const std::int32_t> columns) {
  std::vector<bool> isNamed(method.parameters.size());
  for (const std::int32_t column : columns) {
    const auto position = static_cast<std::size_t>(column);
    const bool isOutput = column >= 0 && position < isNamed.size() &&
                          method.parameters[position].kind == ParameterKind::OptionalOut && !isNamed[position];
    if (!isOutput) {
      return Fail(OXAQRY_E_ARGUMENT,
                  {"the parameter ", std::to_string(column), " of ", method.name, " is no output, or named twice"});
    }
    isNamed[position] = true;
  }
  return OXAQRY_OK;
}

std::int32_t Check(const MethodEntry& method, std::int32_t max, const std::int32_t* columns, std::int32_t columnCount,
                   std::int32_t end, std::int32_t encoding) {
  for (const ParameterEntry& parameter : method.parameters) {
    if (parameter.kind == ParameterKind::In || parameter.kind == ParameterKind::InOut) {
      return Fail(OXAQRY_E_COUNT, {method.name, " needs the argument ", parameter.name});
    }
  }
  if (method.result == ResultKind::None) return Fail(OXAQRY_E_MEMBER, {method.name, " has no result"});
  if (max < 0 || columnCount < 0) return Fail(OXAQRY_E_ARGUMENT, {"a count is negative"});
  if (columns == nullptr && columnCount > 0) return IsNull("columns");
  if (end != OXAQRY_UNTIL_END && end != OXAQRY_EVERY_ROW) return Fail(OXAQRY_E_ARGUMENT, {"there is no such end"});
  if (!IsEncoding(encoding)) return IsNoEncoding();
  return CheckColumns(method, std::span(columns, static_cast<std::size_t>(columnCount)));
}

}  // namespace

int32_t oxaqry_fetch_rows(oxaqry_query* query, int32_t method, int32_t max, const int32_t* columns,
                          int32_t column_count, int32_t end, int32_t encoding, oxaqry_rows** rows) {
  return WithQuery(query, [&](Query& source) -> std::int32_t {
    const MethodEntry* const entry = source.MethodOf(method);
    if (entry == nullptr) return OXAQRY_E_MEMBER;
    const std::int32_t code = Check(*entry, max, columns, column_count, end, encoding);
    if (code != OXAQRY_OK) return code;
    if (rows == nullptr) return IsNull("rows");
    const Wanted wanted{*entry, max, std::span(columns, static_cast<std::size_t>(column_count)),
                        end == OXAQRY_EVERY_ROW, encoding == OXAQRY_UTF8};
    auto made = std::make_unique<Rows>(source.rowMemory());
    RowReader reader(source, wanted, *made);
    source.Run([&] { reader.ReadAll(); });
    return HandOut(std::move(made), rows);
  });
}

int32_t oxaqry_rows_read(oxaqry_rows* rows, int32_t* row_count, int32_t* column_count, const char** block,
                         const uint32_t** offsets) {
  return With<Rows>(rows, [&](Rows& source) {
    Give(row_count, source.rowCount);
    Give(column_count, source.columnCount);
    Give(block, source.block());
    Give(offsets, source.offsets());
    return OXAQRY_OK;
  });
}

int32_t oxaqry_rows_free(oxaqry_rows* rows) { return FreeHandle(rows, HandleKind::Rows); }
