// The lists of what the archive offers: channels, archives, query formats, and the properties of an archive.
#include "component/clsQuery.h"
#include "component/query_state.h"
#include "values/errors.h"

namespace oxaqrycln {
namespace {

// "name,text": what stands before and after the first comma. Without one the name is the whole line.
struct NamedLine {
  std::string_view name;
  std::string_view text;
  bool hasComma;
};

NamedLine SplitName(std::string_view line) noexcept {
  const std::size_t comma = line.find(',');
  if (comma == std::string_view::npos) return {line, {}, false};
  return {line.substr(0, comma), line.substr(comma + 1), true};
}

// The common shape of an Init method; sorted lists are put in order after they were counted.
template <typename... Elements>
Variant LoadList(QueryState& state, std::string_view routine, bool sorted, Variant* status,
                 const Elements&... elements) {
  return state.Run(routine, Failed(), [&](Variant& result) {
    if (!state.Load({elements...}, status)) return;
    result = Variant::Long(state.buffer.Count());
    WriteText(status, "");
    if (sorted) state.buffer.Sort();
  });
}

std::string NextLine(QueryState& state, std::string_view routine) {
  return state.Run(routine, std::string(), [&](std::string& result) {
    if (!state.buffer.AtEnd()) result = state.buffer.Take();
  });
}

}  // namespace

Variant clsQuery::TELOGetChannelsInit(Variant* strParamStatus) {
  return LoadList(*state_, "TELOGetChannelsInit", true, strParamStatus, "GetChannels");
}

std::string clsQuery::TELOGetChannelsNext(Variant* strChannelDescription) {
  QueryState& state = *state_;
  return state.Run("TELOGetChannelsNext", std::string(), [&](std::string& result) {
    if (state.buffer.AtEnd()) return;
    const NamedLine channel = SplitName(state.buffer.Take());
    result = channel.name;
    WriteText(strChannelDescription, channel.text);
  });
}

Variant clsQuery::TELOGetAllArchivesInit(Variant* strParamStatus) {
  return LoadList(*state_, "TELOGetAllArchivesInit", true, strParamStatus, "GetAllArchives");
}

std::string clsQuery::TELOGetAllArchivesNext() { return NextLine(*state_, "TELOGetAllArchivesNext"); }

Variant clsQuery::TELOGetQueryFormatListInit(const Variant& strChannel, const Variant& strArchive,
                                             Variant* strParamStatus) {
  return LoadList(*state_, "TELOGetQueryFormatListInit", false, strParamStatus, "GetQueryFormatList", strChannel,
                  strArchive);
}

std::string clsQuery::TELOGetQueryFormatListNext() { return NextLine(*state_, "TELOGetQueryFormatListNext"); }

Variant clsQuery::TELOGetAllArchivesExtInit(Variant* strParamStatus) {
  QueryState& state = *state_;
  return state.Run("TELOGetAllArchivesExtInit", Failed(), [&](Variant& result) {
    if (!state.Load({"GetAllArchivesExt"}, strParamStatus)) return;
    std::int32_t channels = 0;
    for (std::int32_t i = 0; i < state.buffer.Count(); ++i) channels += state.buffer.Line(i).starts_with('#') ? 1 : 0;
    result = Variant::Long(channels);
    WriteText(strParamStatus, "");
  });
}

Variant clsQuery::TELOGetAllArchivesExtNext(Variant* strChannel, Variant* strChannelDescription) {
  QueryState& state = *state_;
  return state.Run("TELOGetAllArchivesExtNext", Failed(), [&](Variant& result) {
    ResponseBuffer& buffer = state.buffer;
    WriteText(strChannel, "");
    WriteText(strChannelDescription, "");
    while (!buffer.AtEnd() && !buffer.Line(buffer.position()).starts_with('#')) buffer.MoveTo(buffer.position() + 1);
    if (buffer.AtEnd()) return;
    const std::string_view header = buffer.Line(buffer.position());
    const NamedLine channel = SplitName(header);
    if (strChannel != nullptr) {
      if (!channel.hasComma) throw RuntimeError(error::kInvalidProcedureCall);
      strChannel->AssignText(channel.name.substr(1));
    }
    WriteText(strChannelDescription, channel.hasComma ? channel.text : header);
    buffer.MoveTo(buffer.position() + 1);
    std::int32_t end = buffer.position();
    while (end < buffer.Count() && !buffer.Line(end).starts_with('#')) ++end;
    result = Variant::Long(end - buffer.position());
  });
}

std::string clsQuery::TELOGetAllArchivesExtNextArchive(Variant* strComment) {
  QueryState& state = *state_;
  return state.Run("TELOGetAllArchivesExtNextArchive", std::string(), [&](std::string& result) {
    WriteText(strComment, "");
    // Kept: at the end of the buffer the access fails, and the log tells that the walk went too far.
    const std::string_view line = state.buffer.Line(state.buffer.position());
    if (line.starts_with('#')) return;
    const NamedLine archive = SplitName(line);
    WriteText(strComment, archive.text);
    result = archive.name;
    state.buffer.MoveTo(state.buffer.position() + 1);
  });
}

void clsQuery::TELOGetAllArchivesExtFirst() { state_->buffer.MoveTo(0); }

Variant clsQuery::TELOGetArchiveProperties(const Variant& strChannel, const Variant& strArchive, Variant* blnCreate,
                                           Variant* blnEdit, Variant* blnDelete, Variant* blnIndex,
                                           Variant* strParamStatus) {
  QueryState& state = *state_;
  return state.Run("TELOGetArchiveProperties", Failed(), [&](Variant& result) {
    if (!state.Load({"GetArchiveProperties", strChannel, strArchive}, strParamStatus)) return;
    if (state.buffer.Count() > 0) {
      std::string_view rest = state.buffer.Line(0);
      bool more = !rest.empty();
      const auto nextField = [&] {
        if (!more) throw RuntimeError(error::kSubscriptOutOfRange);
        const NamedLine field = SplitName(rest);
        more = field.hasComma;
        rest = field.text;
        return field.name;
      };
      for (Variant* output : {blnCreate, blnEdit, blnDelete, blnIndex}) WriteText(output, nextField());
      result = Variant(nextField());
    }
    WriteText(strParamStatus, "");
  });
}

}  // namespace oxaqrycln
