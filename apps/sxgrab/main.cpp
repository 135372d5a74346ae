// sxgrab: saves what the X server shows of one window (or of the whole screen)
// as a PNG file and prints its size as WIDTHxHEIGHT. The real-window test and
// scripts/screenshots.sh run it on the xcb platform against their Xvfb.
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QImageWriter>
#include <QPixmap>
#include <QScreen>

#include <cstdio>

namespace {

/// The most compression PNG offers: Qt maps quality 0 to zlib level 9.
constexpr int SmallestPng = 0;

/// A window id as xdotool prints it (decimal) or as xwininfo does (0x...).
bool ParseWindowId(const QString& text, WId& id)
{
    bool ok = false;
    id = static_cast<WId>(text.toULongLong(&ok, 0));
    return ok;
}

int Fail(const QString& message)
{
    std::fprintf(stderr, "sxgrab: %s\n", qPrintable(message));
    return 1;
}

}  // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Saves a screenshot of an X window, read from the X server"));
    options.addHelpOption();
    const QCommandLineOption window(QStringLiteral("window"), QStringLiteral("The window to grab (default: the screen)"),
                                    QStringLiteral("id"), QStringLiteral("0"));
    options.addOption(window);
    options.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The PNG file to write"));
    options.process(app);

    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return Fail(QStringLiteral("needs an X display (QT_QPA_PLATFORM=xcb), not the %1 platform")
                        .arg(QGuiApplication::platformName()));
    if (options.positionalArguments().size() != 1)
        return Fail(QStringLiteral("name one PNG file to write"));
    WId id = 0;
    if (!ParseWindowId(options.value(window), id))
        return Fail(QStringLiteral("not a window id: %1").arg(options.value(window)));
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return Fail(QStringLiteral("no screen"));
    const QPixmap shot = screen->grabWindow(id);
    if (shot.isNull())
        return Fail(QStringLiteral("could not grab window %1").arg(options.value(window)));

    const QString path = options.positionalArguments().first();
    QImageWriter writer(path, "png");
    writer.setQuality(SmallestPng);
    if (!writer.write(shot.toImage()))
        return Fail(QStringLiteral("cannot write %1: %2").arg(path, writer.errorString()));
    std::printf("%dx%d\n", shot.width(), shot.height());
    return 0;
}
