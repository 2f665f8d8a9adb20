#!/usr/bin/python3
"""tools/check-layers against small trees with one planted violation each."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOOL = Path(__file__).resolve().parents[2] / "tools" / "check-layers"

CLEAN = {
    "base/CMakeLists.txt": "tockwise_library(base SOURCES date.h date.cpp LINKS Qt6::Core)",
    "base/date.h": "#include <QString>\n",
    "base/date.cpp": '#include "base/date.h"\n',
    "store/CMakeLists.txt":
        "tockwise_library(store\n  SOURCES queue.h queue.cpp # sixteen columns\n"
        "  LINKS tockwise_base Qt6::Core\n  PRIVATE_LINKS ICU::uc)",
    "store/queue.h": '#include "base/date.h"\n#include <QtGlobal>\n#include <memory>\n',
    "store/queue.cpp": '#include "store/queue.h"\n#include <unicode/uchar.h>\n',
    "menu/ui/CMakeLists.txt":
        "tockwise_library(menu_ui MOC SOURCES tray.cpp LINKS tockwise_store Qt6::Widgets)",
    "menu/ui/tray.cpp": '#include "store/queue.h"\n#include <QMenu>\n#include "tray.moc"\n',
    "platform/CMakeLists.txt":
        "tockwise_library(platform SOURCES sound.h LINKS PkgConfig::CANBERRA)",
    "platform/sound.h": "#include <canberra.h>\n",
    "app/CMakeLists.txt":
        "tockwise_library(app SOURCES app.cpp app.h\n  LINKS tockwise_platform Qt6::DBus)",
    "app/app.cpp": '#include "platform/sound.h"\n#include <QDBusConnection>\n',
    "app/app.h": "",
    "CMakeLists.txt":
        "add_executable(tockwise main.cpp)\n"
        "target_link_libraries(tockwise PRIVATE tockwise_app Qt6::Core)\n",
    "main.cpp": '#include "app/app.h"\n#include <QCoreApplication>\n',
}


class CheckLayers(unittest.TestCase):
    def run_tool(self, changes):
        """The exit status and the lines for the clean tree with the changes made to it."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**CLEAN, **changes}.items():
                path = Path(folder, "src", name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            done = subprocess.run([sys.executable, str(TOOL), folder], capture_output=True,
                                  text=True, check=False)
        self.assertEqual(done.stderr, "")
        return done.returncode, done.stdout.splitlines()

    def assert_reported(self, changes, *expected):
        status, lines = self.run_tool(changes)
        self.assertEqual((status, lines), (1, list(expected)))

    def test_a_clean_tree_passes_without_a_word(self):
        self.assertEqual(self.run_tool({}), (0, []))

    def test_an_include_of_a_later_folder_is_reported(self):
        self.assert_reported(
            {"base/date.cpp": '#include "store/queue.h"\n',
             "base/CMakeLists.txt":
                 "tockwise_library(base SOURCES date.h date.cpp LINKS Qt6::Core tockwise_store)"},
            'src/base/date.cpp: "store/queue.h": base stands before store')

    def test_an_include_in_a_comment_is_not_an_include(self):
        self.assertEqual(self.run_tool({"base/date.cpp": '/*\n#include "store/queue.h"\n*/\n'}),
                         (0, []))

    def test_folders_of_one_row_do_not_include_one_another(self):
        self.assert_reported(
            {"print/CMakeLists.txt":
                 "tockwise_library(print SOURCES window.h LINKS tockwise_documents)",
             "print/window.h": '#include "documents/item.h"\n',
             "documents/CMakeLists.txt": "tockwise_library(documents SOURCES item.h)",
             "documents/item.h": ""},
            'src/print/window.h: "documents/item.h": print stands before documents')

    def test_only_the_application_names_the_platform(self):
        self.assert_reported(
            {"cli/CMakeLists.txt":
                 "tockwise_library(cli SOURCES run.cpp LINKS tockwise_platform)",
             "cli/run.cpp": '#include "platform/sound.h"\n'},
            'src/cli/run.cpp: "platform/sound.h": only app names platform')

    def test_widgets_in_the_logic_are_reported(self):
        for header in ("QWidget", "QtWidgets/QWidget", "QImage", "QtGui"):
            self.assert_reported(
                {"store/queue.cpp": f"#include <{header}>\n",
                 "store/CMakeLists.txt":
                     "tockwise_library(store SOURCES queue.h queue.cpp LINKS tockwise_base "
                     "Qt6::Core Qt6::Widgets Qt6::Gui)"},
                f"src/store/queue.cpp: <{header}>: store is logic and uses Qt Core only")

    def test_a_library_outside_its_folder_is_reported(self):
        self.assert_reported(
            {"app/app.h": "#include <X11/Xlib.h>\n#include <curl/curl.h>\n"},
            "src/app/app.h: <X11/Xlib.h>: X11 is not for app",
            "src/app/app.h: <curl/curl.h>: curl is not for app")

    def test_a_used_target_that_is_not_linked_is_reported(self):
        self.assert_reported(
            {"store/CMakeLists.txt":
                 "tockwise_library(store SOURCES queue.h queue.cpp LINKS Qt6::Core)"},
            "src/store/queue.h: tockwise_store uses tockwise_base and does not link it")

    def test_a_used_qt_module_that_is_not_linked_is_reported(self):
        self.assert_reported(
            {"menu/ui/CMakeLists.txt":
                 "tockwise_library(menu_ui SOURCES tray.cpp LINKS tockwise_store)"},
            "src/menu/ui/tray.cpp: tockwise_menu_ui uses Qt6::Widgets and does not link it")

    def test_a_linked_target_that_is_not_used_is_reported(self):
        self.assert_reported(
            {"store/queue.h": ""},
            "src/store/CMakeLists.txt: tockwise_store links tockwise_base and includes nothing "
            "of it")

    def test_a_source_without_a_target_is_reported(self):
        self.assert_reported({"store/stray.cpp": ""},
                             "src/store/stray.cpp: no target has this file among its sources")

    def test_a_listed_source_that_is_not_there_is_reported(self):
        self.assert_reported(
            {"base/CMakeLists.txt":
                 "tockwise_library(base SOURCES date.h date.cpp gone.cpp LINKS Qt6::Core)"},
            "src/base/CMakeLists.txt: gone.cpp is not there")

    def test_an_include_that_is_not_written_from_src_is_reported(self):
        self.assert_reported(
            {"base/date.cpp": '#include "date.h"\n'},
            'src/base/date.cpp: "date.h" is not a file of src/ (includes are written from src/)')

    def test_a_folder_outside_the_order_is_reported(self):
        self.assert_reported({"common/utils.h": ""},
                             "src/common/utils.h: this folder has no place in the order")

    def test_a_folder_without_sources_is_an_error(self):
        with tempfile.TemporaryDirectory() as folder:
            done = subprocess.run([sys.executable, str(TOOL), folder], capture_output=True,
                                  text=True, check=False)
        self.assertEqual(done.returncode, 2)


if __name__ == "__main__":
    unittest.main()
