// The panels in which the user chooses where a document is saved and which one is opened.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class QFileDialog;

namespace tockwise {

/// Main thread. A panel opens and the call returns; the program goes on beside it. While a panel is
/// open a further call brings it to the front and is otherwise ignored.
class DocumentPanels {
 public:
  /// Called once from the event loop, when no panel is open any more, with an absolute path; never
  /// when the user cancels.
  using Chosen = std::function<void(const QString& path)>;

  virtual ~DocumentPanels() = default;

  /// name: what the panel proposes, alone or with the folder to begin in. Before it takes the name
  /// of a file that there is, the panel asks.
  virtual void chooseWhereToSave(const QString& name, const Chosen& chosen) = 0;
  virtual void chooseDocument(const Chosen& chosen) = 0;
};

/// The desktop's own panels where there are any, else Qt's, named "savePanel" and "openPanel".
class FileDialogPanels final : public QObject, public DocumentPanels {
  Q_OBJECT
 public:
  FileDialogPanels() = default;
  ~FileDialogPanels() override;

  void chooseWhereToSave(const QString& name, const Chosen& chosen) override;
  void chooseDocument(const Chosen& chosen) override;

 private:
  void present(QPointer<QFileDialog>& place, QFileDialog* panel, const Chosen& chosen);

  QPointer<QFileDialog> m_savePanel;
  QPointer<QFileDialog> m_openPanel;
  QString m_folder; // where a file was chosen last
};

} // namespace tockwise
