#include "apps/drive/Reply.h"

#include "apps/drive/JsonWriter.h"

namespace quillon::apps {
namespace {

void write(JsonWriter& out, std::string_view name, const std::vector<std::string>& texts) {
  out.key(name).array();
  for (const std::string& text : texts) out.value(text);
  out.endArray();
}

void write(JsonWriter& out, const std::vector<form::Ended>& finished) {
  out.key("finished").array();
  for (const form::Ended& ended : finished) {
    out.object().member("command", ended.command).member("ok", ended.ok);
    if (ended.aborted) out.member("aborted", true);
    if (!ended.error.empty()) {
      out.key("error").object().member("text", ended.error);
      (ended.code ? out.member("code", ended.code) : out.key("code").null()).endObject();
    }
    out.endObject();
  }
  out.endArray();
}

void write(JsonWriter& out, const Standing& standing) {
  out.key("waiting");
  if (const Question* question = standing.question) {
    out.object().key("dialog").object().member("kind", question->kind).member("caption", question->caption);
    out.member("text", question->text);
    write(out, "buttons", question->buttons);
    out.member("default", question->standard).endObject().endObject();
  } else if (!standing.modal.empty()) {
    out.object().member("modal", standing.modal).endObject();
  } else {
    out.null();
  }
}

}  // namespace

std::string textOf(const Reply& reply, const Standing& standing) {
  JsonWriter out;
  out.object();
  if (reply.ready) out.member("ready", true);
  out.member("ok", reply.ok);
  if (!reply.error.empty()) {
    out.key("error").object().member("text", reply.error);
    if (reply.code) out.member("code", reply.code);
    if (!reply.exists.empty()) write(out, "exists", reply.exists);
    out.endObject();
  }
  if (!reply.members.empty()) out.raw(reply.members);
  out.key("messages").array();
  for (const Question& message : reply.messages)
    out.object()
        .member("kind", message.kind)
        .member("caption", message.caption)
        .member("text", message.text)
        .endObject();
  out.endArray();
  write(out, "opened", reply.opened);
  write(out, "closed", reply.closed);
  write(out, "outside", reply.outside);
  if (reply.clipboard) out.member("clipboard", *reply.clipboard);
  out.key("focus");
  standing.focus.empty() ? out.null() : out.value(standing.focus);
  write(out, reply.finished);
  write(out, standing);
  return out.endObject().text();
}

}  // namespace quillon::apps
