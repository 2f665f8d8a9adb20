#include "documents/document_panels.h"

#include "store/documents/document_file.h"

#include <QChildEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QStandardPaths>

namespace tockwise {
namespace {

/// Qt's file dialog asks in boxes that block every window of the program, alerts too. Here they
/// block the panel alone.
class Panel final : public QFileDialog {
 public:
  using QFileDialog::QFileDialog;

  /// False while the desktop's own panel stands in.
  bool isOurOwn() const { return findChild<QLineEdit*>(QStringLiteral("fileNameEdit")) != nullptr; }

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ChildPolished) {
      auto* child = static_cast<QChildEvent*>(event)->child();
      if (auto* box = qobject_cast<QMessageBox*>(child))
        box->setWindowModality(Qt::WindowModal);
    }
    return QFileDialog::event(event);
  }
};

QString documentsFilter() {
  return QStringLiteral("Reminders documents (*.%1)").arg(QStringView(kDocumentSuffix));
}

QString firstFolder() {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

// The desktop's own panel knows best where it was last.
void begin(Panel& panel, const QString& folder) {
  if (panel.isOurOwn())
    panel.setDirectory(folder.isEmpty() ? firstFolder() : folder);
}

void bringToFront(QFileDialog& panel) {
  panel.show();
  panel.raise();
  panel.activateWindow();
}

} // namespace

FileDialogPanels::~FileDialogPanels() {
  delete m_savePanel;
  delete m_openPanel;
}

void FileDialogPanels::chooseWhereToSave(const QString& name, const Chosen& chosen) {
  if (m_savePanel) {
    bringToFront(*m_savePanel);
    return;
  }
  auto* panel = new Panel(nullptr, QStringLiteral("Save Reminders"));
  panel->setObjectName(QStringLiteral("savePanel"));
  panel->setAcceptMode(QFileDialog::AcceptSave);
  panel->setFileMode(QFileDialog::AnyFile);
  panel->setNameFilter(documentsFilter());
  begin(*panel, m_folder);
  // Ours then asks about the name with its suffix; what a desktop's panel would do with one is not
  // the same everywhere.
  if (panel->isOurOwn())
    panel->setDefaultSuffix(QString::fromUtf16(kDocumentSuffix));
  panel->selectFile(name);
  present(m_savePanel, panel, chosen);
}

void FileDialogPanels::chooseDocument(const Chosen& chosen) {
  if (m_openPanel) {
    bringToFront(*m_openPanel);
    return;
  }
  auto* panel = new Panel(nullptr, QStringLiteral("Choose a file"));
  panel->setObjectName(QStringLiteral("openPanel"));
  panel->setAcceptMode(QFileDialog::AcceptOpen);
  panel->setFileMode(QFileDialog::ExistingFile);
  panel->setOption(QFileDialog::ReadOnly); // no folder is made here
  panel->setNameFilter(documentsFilter());
  panel->setLabelText(QFileDialog::Accept, QStringLiteral("Choose"));
  begin(*panel, m_folder);
  present(m_openPanel, panel, chosen);
}

void FileDialogPanels::present(QPointer<QFileDialog>& place, QFileDialog* panel,
                               const Chosen& chosen) {
  place = panel;
  panel->setWindowModality(Qt::NonModal);
  connect(panel, &QDialog::finished, this, [this, &place, panel, chosen](int result) {
    // Whoever gets the path may ask, and the next panel may be wanted meanwhile.
    place.clear();
    panel->deleteLater();
    const QStringList files = panel->selectedFiles();
    if (result != QDialog::Accepted || files.isEmpty())
      return;
    const QString path = QFileInfo(files.constFirst()).absoluteFilePath();
    m_folder = QFileInfo(path).absolutePath();
    QMetaObject::invokeMethod(
        this, [chosen, path] { chosen(path); }, Qt::QueuedConnection);
  });
  bringToFront(*panel);
}

} // namespace tockwise
