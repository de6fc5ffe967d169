#include "editor/ColorScheme.h"
#include "editor/EditorOptions.h"
#include "editor/MainWindow.h"
#include "editor/RenderCommand.h"
#include "editor/Translations.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {

constexpr int WrongCall = 2;

int Run(const EditorOptions& options)
{
    // A rendered window looks the same on every machine, and leaves no trace in the user's settings.
    const QTemporaryDir settings;
    if (options.isRender)
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    ColorScheme::Apply(options.colorScheme.value_or(ColorScheme::Stored()));
    MainWindow window;
    std::unique_ptr<RenderCommand> render;
    window.show();
    if (options.isRender) {
        render = std::make_unique<RenderCommand>(window, options);
        render->Start();
    } else if (!options.pictures.isEmpty()) {
        window.Open(options.pictures);
    }
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui"));
    QCoreApplication::setApplicationName(QStringLiteral("adjust-editor"));
    QCoreApplication::setApplicationVersion(QStringLiteral(EDITOR_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("adjust-editor"));
    Translations::Install();
    const EditorOptions options = EditorOptions::Parse(QCoreApplication::arguments());
    if (!options.error.isEmpty()) {
        std::fprintf(stderr, "adjust-editor: %s\n", qPrintable(options.error));
        return WrongCall;
    }
    return Run(options);
}
