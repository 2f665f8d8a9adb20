// The login item as an XDG autostart entry.
#pragma once

#include "ports/login_items.h"

#include <QString>

namespace tockwise {

class AutostartLoginItems final : public LoginItems {
 public:
  /// folder: where autostart entries of the user are; program: the command that starts us.
  AutostartLoginItems(QString folder, QString program);
  /// $XDG_CONFIG_HOME/autostart, and this program.
  static AutostartLoginItems ofUser();

  bool isPresent() const override;
  Result<void> add() override;
  Result<void> remove() override;

 private:
  QString m_folder;
  QString m_program;
};

} // namespace tockwise
