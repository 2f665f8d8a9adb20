#include "richtext/link_prompt.h"

#include "richtext/color_palette.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QUrl>
#include <QVBoxLayout>

namespace tockwise {
namespace {

constexpr int kAddressWidth = 260;

bool looksLikeMail(const QString& text) {
  static const QRegularExpression form(
      QStringLiteral("^[^\\s@/:?#]+@[^\\s@/:?#]+\\.[^\\s@/:?#.]+$"));
  return form.match(text).hasMatch();
}

/// A host is a name with a dot, an address in brackets, or localhost.
bool isWholeHost(const QString& host) {
  return host == QLatin1String("localhost") || host.contains(u':') ||
         (host.contains(u'.') && !host.startsWith(u'.') && !host.endsWith(u'.'));
}

} // namespace

QString linkAddress(const QString& written) {
  const QString text = written.trimmed();
  static const QRegularExpression schemed(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:(?!\\d)"));
  if (text.contains(QRegularExpression(QStringLiteral("\\s"))))
    return {};
  QString whole = text;
  if (looksLikeMail(text))
    whole = QStringLiteral("mailto:") + text;
  else if (!text.isEmpty() && !schemed.match(text).hasMatch())
    whole = QStringLiteral("https://") + text;
  const QUrl url(whole, QUrl::StrictMode);
  const QString scheme = url.scheme();
  if (scheme == QLatin1String("mailto"))
    return looksLikeMail(url.path()) ? whole : QString();
  const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
  return isWeb && url.isValid() && isWholeHost(url.host()) ? whole : QString();
}

LinkPrompt::LinkPrompt(QWidget* parent)
    : QFrame(parent, Qt::Popup),
      m_address(new QLineEdit(this)),
      m_problem(new QLabel(this)),
      m_remove(new QPushButton(tr("Remove"), this)) {
  setObjectName(QStringLiteral("linkPrompt"));
  setAccessibleName(tr("Link"));
  setFrameStyle(QFrame::StyledPanel);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(8, 8, 8, 8);
  column->setSpacing(4);
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  column->addLayout(row);
  m_address->setObjectName(QStringLiteral("linkAddress"));
  m_address->setAccessibleName(tr("Address of the link"));
  m_address->setPlaceholderText(tr("Web or e-mail address"));
  m_address->setMinimumWidth(kAddressWidth);
  m_address->setClearButtonEnabled(true);
  row->addWidget(m_address);
  auto* apply = new QPushButton(tr("Link"), this);
  apply->setObjectName(QStringLiteral("applyLinkButton"));
  row->addWidget(apply);
  m_remove->setObjectName(QStringLiteral("removeLinkButton"));
  row->addWidget(m_remove);
  m_problem->setObjectName(QStringLiteral("linkProblem"));
  m_problem->setText(tr("This is no web or e-mail address."));
  column->addWidget(m_problem);
  connect(m_address, &QLineEdit::returnPressed, this, &LinkPrompt::take);
  connect(m_address, &QLineEdit::textEdited, this, [this] {
    m_problem->hide();
    adjustSize();
  });
  connect(apply, &QPushButton::clicked, this, &LinkPrompt::take);
  connect(m_remove, &QPushButton::clicked, this, [this] {
    close();
    Q_EMIT removed();
  });
}

void LinkPrompt::ask(const QWidget& anchor, QRect below, const QString& address) {
  m_address->setText(address);
  m_address->selectAll();
  m_problem->hide();
  m_remove->setVisible(!address.isEmpty());
  adjustSize();
  move(popupPlace(anchor, below, size()));
  show();
  m_address->setFocus();
}

void LinkPrompt::take() {
  const QString address = linkAddress(m_address->text());
  if (address.isEmpty()) {
    m_problem->show();
    adjustSize();
    m_address->setFocus();
    return;
  }
  close();
  Q_EMIT accepted(address);
}

} // namespace tockwise
