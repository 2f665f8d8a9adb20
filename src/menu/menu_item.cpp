#include "menu/menu_item.h"

#include <QJsonObject>

namespace tockwise {
namespace {

QString colorName(quint32 argb) {
  const bool opaque = argb >> 24 == 0xff;
  return u'#' +
         QString::number(opaque ? argb & 0xffffffu : argb, 16).rightJustified(opaque ? 6 : 8, u'0');
}

QJsonObject attachmentToJson(const RichAttachment& attachment) {
  return {{QStringLiteral("name"), attachment.name},
          {QStringLiteral("bytes"), attachment.bytes},
          {QStringLiteral("width"), attachment.width},
          {QStringLiteral("height"), attachment.height}};
}

QJsonObject attributesToJson(const RichAttributes& attributes) {
  QJsonObject json;
  const auto put = [&](const char16_t* name, const auto& value) {
    if (value)
      json.insert(QString::fromUtf16(name), *value);
  };
  const auto putColor = [&](const char16_t* name, const std::optional<quint32>& color) {
    if (color)
      json.insert(QString::fromUtf16(name), colorName(*color));
  };
  put(u"font", attributes.font);
  put(u"size", attributes.size);
  putColor(u"color", attributes.color);
  putColor(u"background", attributes.background);
  put(u"underline", attributes.underline);
  put(u"strikethrough", attributes.strikethrough);
  put(u"superscript", attributes.superscript);
  put(u"link", attributes.link);
  put(u"alignment", attributes.alignment);
  if (attributes.attachment)
    json.insert(QStringLiteral("attachment"), attachmentToJson(*attributes.attachment));
  if (!attributes.other.isEmpty())
    json.insert(QStringLiteral("other"), QJsonArray::fromStringList(attributes.other));
  return json;
}

QJsonObject itemToJson(const MenuItem& item) {
  return {{QStringLiteral("title"), item.title},
          {QStringLiteral("action"), item.action.isEmpty() ? QJsonValue() : item.action},
          {QStringLiteral("tag"), item.tag},
          {QStringLiteral("enabled"), item.enabled},
          {QStringLiteral("checked"), item.checked},
          {QStringLiteral("toolTip"), item.toolTip},
          {QStringLiteral("separator"), item.separator},
          {QStringLiteral("richTitle"),
           item.richTitle ? QJsonValue(richTextToJson(*item.richTitle)) : QJsonValue()},
          {QStringLiteral("submenu"), menuToJson(item.submenu)}};
}

} // namespace

QJsonArray richTextToJson(const RichText& text) {
  QJsonArray runs;
  for (const RichRun& run : text) {
    runs.append(QJsonObject{{QStringLiteral("text"), run.text},
                            {QStringLiteral("attributes"), attributesToJson(run.attributes)}});
  }
  return runs;
}

QJsonArray menuToJson(const std::vector<MenuItem>& items) {
  QJsonArray json;
  for (const MenuItem& item : items)
    json.append(itemToJson(item));
  return json;
}

} // namespace tockwise
