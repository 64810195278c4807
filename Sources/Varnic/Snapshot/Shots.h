#pragma once

#include <QSize>

#include <span>
#include <string_view>
#include <variant>

namespace varnic {

class AppModel;

/// One of the pictures: of a window that shows the model in a certain state.
struct Shot {
    /// The main window, at its smallest.
    struct MainWindow {};

    /// A view of its own, by its file below the QML modules of the program.
    struct View {
        std::string_view file;
        /// In points.
        QSize size;
    };

    /// A tab of the settings window, counted from 0.
    struct Settings {
        int tab = 0;
    };

    /// Also that of the file.
    std::string_view name;
    std::variant<MainWindow, View, Settings> shown;
    /// Brings the model into its state from that of Scenes::rest.
    void (*arrange)(AppModel&);
};

/// All of them, in the order in which they are taken.
std::span<const Shot> allShots();

} // namespace varnic
