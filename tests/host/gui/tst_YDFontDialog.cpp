#include "gui/YDFontDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>
#include <limits>
#include <memory>

namespace {

/// A family that is installed, with a style for upright and regular whatever its name.
QFont Installed() { return QFont(QFontInfo(QFont()).family(), 20); }

/// Runs `act` in the dialog's event loop, once the dialog is shown.
void InTheLoop(YDFontDialog& dialog, const std::function<void()>& act)
{
    QTimer::singleShot(0, &dialog, [&dialog, act] {
        QVERIFY(dialog.isVisible());
        QVERIFY(dialog.isModal());
        act();
        if (dialog.isVisible())
            dialog.reject();
    });
}

QByteArray Stored(const QFont& font)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << font;
    return bytes;
}

/// A font that no box could have made, as streams may hold it.
QFont FromStream(double points, qint32 pixels, const QString& family)
{
    QByteArray bytes;
    QDataStream writer(&bytes, QIODevice::WriteOnly);
    writer << family << QString() << points << pixels << quint8(5) << quint16(1) << quint8(0) << quint8(50)
           << quint8(0) << quint16(100) << quint8(0) << qint32(0) << qint32(0) << quint8(0) << quint8(0)
           << QStringList();
    QDataStream reader(bytes);
    QFont font;
    reader >> font;
    return font;
}

} // namespace

class TestYDFontDialog : public QObject
{
    Q_OBJECT

private slots:
    void HoldsTheFontAsItWasGiven_data();
    void HoldsTheFontAsItWasGiven();
    void BeginsWithTheFontThatItWasGiven();
    void BeginsUprightWhateverTheStyleIsCalled();
    void ThePickIsGivenBack();
    void ExecSaysWhetherTheUserAccepted_data();
    void ExecSaysWhetherTheUserAccepted();
    void GoesWithItsParentWhileItIsOpen();
    void IsADialogWhateverItsFlags_data();
    void IsADialogWhateverItsFlags();
};

void TestYDFontDialog::HoldsTheFontAsItWasGiven_data()
{
    const QString installed = Installed().family();
    QTest::addColumn<QFont>("font");
    QTest::newRow("installed") << Installed();
    QTest::newRow("none in particular") << QFont();
    QTest::newRow("not installed") << QFont(QStringLiteral("No Such Family"), 20);
    QTest::newRow("without a name") << QFont(QString(), 20);
    QTest::newRow("a very long name") << QFont(QString(10'000'000, QLatin1Char('n')), 20);
    QTest::newRow("in pixels") << FromStream(-1, 30, installed);
    QTest::newRow("no number") << FromStream(std::numeric_limits<double>::quiet_NaN(), -1, installed);
    QTest::newRow("infinite") << FromStream(std::numeric_limits<double>::infinity(), -1, installed);
    QTest::newRow("huge") << FromStream(1e300, -1, installed);
    QTest::newRow("negative") << FromStream(-1e300, std::numeric_limits<int>::min(), installed);
    QTest::newRow("huge in pixels") << FromStream(-1, std::numeric_limits<int>::max(), installed);
    QTest::newRow("without a size") << FromStream(0, 0, installed);
}

void TestYDFontDialog::HoldsTheFontAsItWasGiven()
{
    QFETCH(QFont, font);
    YDFontDialog dialog(font);
    QVERIFY(Stored(dialog.GetFont()) == Stored(font));
    InTheLoop(dialog, [&dialog] { dialog.accept(); });
    QCOMPARE(dialog.Exec(), 1);
    QVERIFY(Stored(dialog.GetFont()) == Stored(font));
}

void TestYDFontDialog::BeginsWithTheFontThatItWasGiven()
{
    QFont font = Installed();
    font.setUnderline(true);
    font.setStrikeOut(true);
    const YDFontDialog dialog(font);
    QCOMPARE(dialog.currentFont().family(), font.family());
    QCOMPARE(dialog.currentFont().pointSize(), 20);
    QVERIFY(dialog.currentFont().underline());
    QVERIFY(dialog.currentFont().strikeOut());
    QVERIFY(dialog.testOption(QFontDialog::DontUseNativeDialog));
}

void TestYDFontDialog::BeginsUprightWhateverTheStyleIsCalled()
{
    for (const bool isBold : {false, true}) {
        QFont font(QStringLiteral("DejaVu Sans"), 20);
        font.setBold(isBold);
        if (QFontInfo(font).family() != font.family())
            QFAIL("the font of the package fonts-dejavu-core is not installed");
        const YDFontDialog dialog(font);
        QCOMPARE(QFontInfo(dialog.currentFont()).italic(), false);
        QCOMPARE(QFontInfo(dialog.currentFont()).bold(), isBold);
    }
}

void TestYDFontDialog::ThePickIsGivenBack()
{
    YDFontDialog dialog(Installed());
    InTheLoop(dialog, [&dialog] {
        const auto boxes = dialog.findChildren<QLineEdit*>();
        QLineEdit* size = nullptr;
        for (QLineEdit* const box : boxes)
            if (box->text() == QLatin1String("20"))
                size = box;
        QVERIFY(size);
        size->setText(QStringLiteral("33"));
        dialog.accept();
    });
    QCOMPARE(dialog.Exec(), 1);
    QCOMPARE(dialog.GetFont().pointSize(), 33);
    QCOMPARE(dialog.GetFont().family(), Installed().family());
}

void TestYDFontDialog::ExecSaysWhetherTheUserAccepted_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("accepted") << int(QDialogButtonBox::Ok) << 1;
    QTest::newRow("cancelled") << int(QDialogButtonBox::Cancel) << 0;
}

void TestYDFontDialog::ExecSaysWhetherTheUserAccepted()
{
    QFETCH(int, button);
    QFETCH(int, result);
    QWidget parent;
    auto* const dialog = new YDFontDialog(Installed(), &parent);
    for (int round = 0; round < 2; ++round) { // it can be run again
        InTheLoop(*dialog, [&] {
            QCOMPARE(QApplication::activeModalWidget(), dialog);
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::StandardButton(button))->click();
        });
        QCOMPARE(dialog->Exec(), result);
    }
}

void TestYDFontDialog::GoesWithItsParentWhileItIsOpen()
{
    auto parent = std::make_unique<QWidget>();
    const QPointer<YDFontDialog> dialog = new YDFontDialog(Installed(), parent.get());
    QTimer::singleShot(0, this, [&] {
        QVERIFY(dialog->isVisible());
        parent.reset();
    });
    QCOMPARE(dialog->Exec(), 0);
    QVERIFY(!dialog);
}

void TestYDFontDialog::IsADialogWhateverItsFlags_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("type");
    QTest::newRow("none") << 0 << int(Qt::Dialog);
    QTest::newRow("a hint alone") << int(Qt::WindowStaysOnTopHint) << int(Qt::Dialog);
    QTest::newRow("a tool window") << 11 << int(Qt::Tool);
}

void TestYDFontDialog::IsADialogWhateverItsFlags()
{
    QFETCH(int, flags);
    QFETCH(int, type);
    QWidget parent;
    const YDFontDialog dialog(Installed(), &parent, Qt::WindowFlags(flags));
    QVERIFY(dialog.isWindow());
    QCOMPARE(int(dialog.windowType()), type);
    QCOMPARE(int(dialog.windowFlags()) & flags, flags);
}

QTEST_MAIN(TestYDFontDialog)
#include "tst_YDFontDialog.moc"
