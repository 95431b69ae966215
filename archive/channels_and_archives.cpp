// The lists of channels, archives and query formats, and the properties of an archive.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "component/clsQuery.h"
#include "component/query_state.h"
#include "values/errors.h"
#include "values/text_parts.h"

namespace oxaqrycln {
namespace {

// A whole Init method. A list is sorted after its lines were counted.
template <typename... Elements>
Variant LoadList(QueryState& state, std::string_view routine, bool sorted, Variant* status,
                 const Elements&... elements) {
  return state.RunAs(routine, Failed(), [&](Variant& result) {
    if (!state.Load({elements...}, status)) return;
    result = Variant::Long(state.buffer.Count());
    WriteText(status, "");
    if (sorted) state.buffer.Sort();
  });
}

std::string NextLine(QueryState& state, std::string_view routine) {
  return state.RunAs(routine, std::string(), [&](std::string& result) {
    if (!state.buffer.AtEnd()) result = state.buffer.Take();
  });
}

}  // namespace

Variant clsQuery::TELOGetChannelsInit(Variant* strParamStatus) {
  return LoadList(*state_, "TELOGetChannelsInit", true, strParamStatus, "GetChannels");
}

std::string clsQuery::TELOGetChannelsNext(Variant* strChannelDescription) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    if (state.buffer.AtEnd()) return;
    const TextCut channel = Cut(state.buffer.Take(), ',');
    result = channel.before;
    WriteText(strChannelDescription, channel.after);
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
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load({"GetAllArchivesExt"}, strParamStatus)) return;
    std::int32_t channels = 0;
    for (std::int32_t i = 0; i < state.buffer.Count(); ++i) channels += state.buffer.Line(i).starts_with('#') ? 1 : 0;
    result = Variant::Long(channels);
    WriteText(strParamStatus, "");
  });
}

Variant clsQuery::TELOGetAllArchivesExtNext(Variant* strChannel, Variant* strChannelDescription) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    ResponseBuffer& buffer = state.buffer;
    WriteText(strChannel, "");
    WriteText(strChannelDescription, "");
    while (!buffer.AtEnd() && !buffer.Line(buffer.position()).starts_with('#')) buffer.MoveTo(buffer.position() + 1);
    if (buffer.AtEnd()) return;
    const TextCut channel = Cut(buffer.Line(buffer.position()), ',');
    if (strChannel != nullptr) {
      if (!channel.hasSeparator) throw RuntimeError(error::kInvalidProcedureCall);
      strChannel->AssignText(channel.before.substr(1));
    }
    WriteText(strChannelDescription, channel.hasSeparator ? channel.after : channel.before);
    buffer.MoveTo(buffer.position() + 1);
    std::int32_t end = buffer.position();
    while (end < buffer.Count() && !buffer.Line(end).starts_with('#')) ++end;
    result = Variant::Long(end - buffer.position());
  });
}

std::string clsQuery::TELOGetAllArchivesExtNextArchive(Variant* strComment) {
  return state_->Run(std::string(), [&](QueryState& state, std::string& result) {
    WriteText(strComment, "");
    // Kept: at the end of the buffer the access fails, and the log shows that the walk went too far.
    const std::string_view line = state.buffer.Line(state.buffer.position());
    if (line.starts_with('#')) return;
    const TextCut archive = Cut(line, ',');
    WriteText(strComment, archive.after);
    result = archive.before;
    state.buffer.MoveTo(state.buffer.position() + 1);
  });
}

void clsQuery::TELOGetAllArchivesExtFirst() { state_->buffer.MoveTo(0); }

Variant clsQuery::TELOGetArchiveProperties(const Variant& strChannel, const Variant& strArchive, Variant* blnCreate,
                                           Variant* blnEdit, Variant* blnDelete, Variant* blnIndex,
                                           Variant* strParamStatus) {
  return state_->Run(Failed(), [&](QueryState& state, Variant& result) {
    if (!state.Load({"GetArchiveProperties", strChannel, strArchive}, strParamStatus)) return;
    if (state.buffer.Count() > 0) {
      const auto fields = Split(state.buffer.Line(0), ',');
      std::size_t next = 0;
      const auto nextField = [&] {
        if (next >= fields.size()) throw RuntimeError(error::kSubscriptOutOfRange);
        return fields[next++];
      };
      for (Variant* output : {blnCreate, blnEdit, blnDelete, blnIndex}) WriteText(output, nextField());
      result = Variant(nextField());
    }
    WriteText(strParamStatus, "");
  });
}

}  // namespace oxaqrycln
