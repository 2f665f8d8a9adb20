#include "cli/store_backend.h"

#include "app/command_service.h"
#include "app/json.h"
#include "app/menu_source.h"
#include "app/offline_order.h"
#include "app/offline_password.h"
#include "app/old_text_conversion.h"
#include "print/print_job.h"
#include "print/printing.h"

#include <functional>
#include <map>

namespace tockwise {
namespace {

const QString kPassword = QStringLiteral("passwordAD");

using Method = std::function<Result<QVariant>(CommandService&, const QVariantList&)>;

template <typename T> Result<QVariant> reply(const Result<T>& result) {
  if (!result)
    return result.error();
  if constexpr (std::is_void_v<T>)
    return QVariant();
  else if constexpr (std::is_same_v<T, QJsonObject>)
    return QVariant(jsonText(*result));
  else
    return QVariant(*result);
}

Result<QVariant> reportOf(const Result<DocumentReport>& report) {
  if (!report)
    return report.error();
  return QVariant(report->toMap());
}

Result<QVariant> openDocument(CommandService& service, const QString& path, bool yes,
                              const QVariantMap& options) {
  const auto tasks = tasksOption(options);
  if (!tasks)
    return tasks.error();
  if (!yes) {
    return Error{Error::Kind::Refused,
                 QStringLiteral("open replaces every reminder, and Tockwise is not running to ask "
                                "you: say so with --yes")};
  }
  return reportOf(service.documents().open(path, *tasks));
}

Result<QVariant> mergeDocument(CommandService& service, const QString& path,
                               const QVariantMap& options) {
  const auto tasks = tasksOption(options);
  if (!tasks)
    return tasks.error();
  return reportOf(service.documents().merge(path, *tasks));
}

const std::map<QString, Method>& methods() {
  using S = CommandService;
  using L = QVariantList;
  static const std::map<QString, Method> table{
      {QStringLiteral("Add"),
       [](S& s, const L& a) { return reply(s.add(a[0].toString(), a[1].toMap())); }},
      {QStringLiteral("Edit"),
       [](S& s, const L& a) { return reply(s.edit(a[0].toString(), a[1].toMap())); }},
      {QStringLiteral("Delete"), [](S& s, const L& a) { return reply(s.remove(a[0].toString())); }},
      {QStringLiteral("Clear"), [](S& s, const L&) { return reply(s.clear()); }},
      {QStringLiteral("Save"),
       [](S& s, const L& a) { return reply(s.documents().save(a[0].toString())); }},
      {QStringLiteral("Open"),
       [](S& s, const L& a) {
         return openDocument(s, a[0].toString(), a[1].toBool(), a[2].toMap());
       }},
      {QStringLiteral("Merge"),
       [](S& s, const L& a) { return mergeDocument(s, a[0].toString(), a[1].toMap()); }},
      {QStringLiteral("List"), [](S& s, const L&) { return Result<QVariant>(jsonText(s.list())); }},
      {QStringLiteral("Show"), [](S& s, const L& a) { return reply(s.show(a[0].toString())); }},
      {QStringLiteral("GetPreference"),
       [](S& s, const L& a) { return reply(s.getPreference(a[0].toString())); }},
      {QStringLiteral("SetPreference"),
       [](S& s, const L& a) {
         return reply(s.setPreference(a[0].toString(), a[1].toStringList()));
       }},
      {QStringLiteral("ListPreferences"), [](S& s, const L&) {
         QVariantMap map;
         for (const auto& [key, text] : s.preferences())
           map.insert(key, text);
         return Result<QVariant>(map);
       }}};
  return table;
}

} // namespace

StoreBackend::StoreBackend(std::unique_ptr<ReminderStore> store)
    : m_store(std::move(store)),
      m_commands(std::make_unique<CommandService>(*m_store, [this] { putInOrder(*m_store); })) {}

StoreBackend::~StoreBackend() = default;

Result<std::unique_ptr<StoreBackend>> StoreBackend::open(const PreferencesStore::Paths& paths,
                                                         const Clock& clock) {
  auto store = ReminderStore::open(paths, clock, oldTextConversion());
  if (!store)
    return store.error();
  putInOrder(**store);
  return std::unique_ptr<StoreBackend>(new StoreBackend(std::move(*store)));
}

// What concerns the password concerns the desktop's password store as well; nothing else does.
Result<QVariant> StoreBackend::callForPassword(const QString& method,
                                               const QVariantList& arguments) {
  const bool sets = method == u"SetPreference";
  std::optional<OfflinePassword> password;
  if (sets || m_store->preferences().isUnread(kPassword))
    password.emplace(m_store->preferences());
  auto answer = methods().at(method)(*m_commands, arguments);
  if (!answer || !sets)
    return answer;
  password->settle();
  return reply(m_commands->saved());
}

Result<QVariant> StoreBackend::call(const QString& method, const QVariantList& arguments) {
  if ((method == u"GetPreference" || method == u"SetPreference") &&
      arguments.value(0).toString() == kPassword)
    return callForPassword(method, arguments);
  if (const auto known = methods().find(method); known != methods().end())
    return known->second(*m_commands, arguments);
  if (method == u"Menu")
    return QVariant(jsonText(menuToJson(menuWithoutApplication(*m_store))));
  if (method == u"PrintPDF" && arguments[1].toBool()) {
    return Error{Error::Kind::Unavailable,
                 QStringLiteral("Tockwise is not running: no alerts are open")};
  }
  if (method == u"PrintPDF") {
    const auto PDF = queueAsPDF(*m_store);
    return reply(PDF ? writeWholeFile(arguments[0].toString(), *PDF) : Result<void>(PDF.error()));
  }
  return Error{Error::Kind::Unavailable, QStringLiteral("Tockwise is not running")};
}

} // namespace tockwise
