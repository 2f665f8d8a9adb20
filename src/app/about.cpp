#include "app/about.h"

namespace tockwise {

void about(Prompter& prompter) {
  prompter.tell(QStringLiteral("About Tockwise"),
                QStringLiteral("Tockwise %1\n\nA reminder application that lives in the system "
                               "tray.\n\nFree software under the GNU General Public License, "
                               "version 3 or later. It comes without any warranty.")
                    .arg(QStringLiteral(TOCKWISE_VERSION)));
}

} // namespace tockwise
