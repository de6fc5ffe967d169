#include "DialogDriver.h"
#include "OverlayPanelChecks.h"
#include "PanelKit.h"
#include "TestPictures.h"
#include "YDSignWidget.h"
#include "core/KVApplication.h"
#include "core/KVImageFileManager.h"
#include "guicore/YDCommonComboBox.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <memory>

using Params = YDSignWidget::Params;

namespace {

using namespace PanelKit;
using DialogDriver::InTheDialog;

QString& ReadableKinds()
{
    static QString filter = QStringLiteral("Pictures (*.png)");
    return filter;
}

struct Fixture
{
    YDSignWidget widget{nullptr, Qt::WindowFlags()};
    QLineEdit* fileName = Child<QLineEdit>(widget, "m_pImageFileName");
    QPushButton* select = Child<QPushButton>(widget, "m_pSelectAnImage");
    YDCommonComboBox* horizontal = Child<YDCommonComboBox>(widget, "m_pHrzAlignment");
    YDCommonComboBox* vertical = Child<YDCommonComboBox>(widget, "m_pVrtAlignment");
    KVSpinBox* left = Child<KVSpinBox>(widget, "m_pLeftMargin");
    KVSpinBox* top = Child<KVSpinBox>(widget, "m_pTopMargin");
    KVSpinBox* right = Child<KVSpinBox>(widget, "m_pRightMargin");
    KVSpinBox* bottom = Child<KVSpinBox>(widget, "m_pBottomMargin");
    KVSlider* opacitySlider = Child<KVSlider>(widget, "m_pOpacitySlider");
    KVSpinBox* opacity = Child<KVSpinBox>(widget, "m_pOpacitySpn");
    YDCommonComboBox* blending = Child<YDCommonComboBox>(widget, "m_pBlendCombo");
    Announcements changes{widget};
};

/// The record in the order of its stream, written by hand.
QByteArray Stored(int alignment, std::initializer_list<qint32> margins, const QString& fileName, int blending,
                  int opacity)
{
    QByteArray bytes = "KVSign 1.00000";
    QDataStream stream(&bytes, QIODevice::WriteOnly | QIODevice::Append);
    stream << qint32(alignment);
    for (const qint32 margin : margins)
        stream << margin;
    stream << fileName << qint32(blending) << qint32(opacity);
    return bytes;
}

Params Sample()
{
    Params params;
    params.alignment = Qt::AlignRight | Qt::AlignBottom;
    params.fileName = QStringLiteral("/stamps/seal.png");
    params.margins.setCoords(1, 22, 333, 999);
    params.blendingMode = 13;
    params.opacity = 40;
    return params;
}

void Choose(QFileDialog& dialog, const QString& file)
{
    dialog.selectFile(file);
    static_cast<QDialog&>(dialog).done(QDialog::Accepted);
}

} // namespace

/// Stands in for the host's, whose kinds of pictures are those of the machine.
QString KVImageFileManager::GetFilterForRead() { return ReadableKinds(); }

class TestYDSignWidget : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void TheMarginsLieAsTheyAre() { OverlayPanelChecks::TheMarginsLieAsTheyAre<Fixture>(); }
    void AlignmentsReplaceOneDirectionOnly_data();
    void AlignmentsReplaceOneDirectionOnly();
    void AlignmentsAreShown_data();
    void AlignmentsAreShown();
    void BlendingModesGoRound_data() { OverlayPanelChecks::AddModes(); }
    void BlendingModesGoRound() { OverlayPanelChecks::BlendingModesGoRound<Fixture>(); }
    void AnIndexThatThereIsNotIsTheNormalMode()
    {
        OverlayPanelChecks::AnIndexThatThereIsNotIsTheNormalMode<Fixture>();
    }
    void AnUnknownModeStaysUntilAnotherIsChosen_data() { OverlayPanelChecks::AddUnknownModes(); }
    void AnUnknownModeStaysUntilAnotherIsChosen()
    {
        OverlayPanelChecks::AnUnknownModeStaysUntilAnotherIsChosen<Fixture>();
    }
    void MarginsAreFourNumbers() { OverlayPanelChecks::MarginsAreFourNumbers<Fixture>(); }
    void AnyNumbersAreKept_data();
    void AnyNumbersAreKept();
    void ALongFileNameIsKept();
    void ALengthBeyondTheBytesThereFails();
    void ChoosingAFileSetsItsName();
    void CancellingTheFileDialogChangesNothing();
    void TheFileDialogBeginsWhereTheLastFileIs();
    void TheFileDialogBeginsWhereTheHostWasLast();
    void WithoutReadablePicturesThereIsNoFileDialog();
    void TheWidgetMayGoWhileTheFileDialogIsOpen();
    void APictureStartsNothing() { OverlayPanelChecks::APictureStartsNothing<Fixture>(); }
};

void TestYDSignWidget::init() { ReadableKinds() = QStringLiteral("Pictures (*.png)"); }

void TestYDSignWidget::AlignmentsReplaceOneDirectionOnly_data()
{
    QTest::addColumn<bool>("isHorizontal");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("after");
    QTest::newRow("centre across") << true << 33 << 1 << 36;
    QTest::newRow("right") << true << 33 << 2 << 34;
    QTest::newRow("left") << true << 34 << 0 << 33;
    QTest::newRow("centre down") << false << 33 << 1 << 129;
    QTest::newRow("bottom") << false << 33 << 2 << 65;
    QTest::newRow("top") << false << 65 << 0 << 33;
    QTest::newRow("no item across") << true << 34 << 3 << 33;
    QTest::newRow("before the items across") << true << 36 << -1 << 33;
    QTest::newRow("no item down") << false << 65 << 3 << 33;
    QTest::newRow("before the items down") << false << 129 << Lowest << 33;
    QTest::newRow("every flag, across") << true << -1 << 1 << int(0xffffffe4);
    QTest::newRow("every flag, down") << false << -1 << 1 << int(0xfffffe9f);
    QTest::newRow("no flag, across") << true << 0 << 2 << 2;
    QTest::newRow("no flag, down") << false << 0 << Highest << 32;
}

void TestYDSignWidget::AlignmentsReplaceOneDirectionOnly()
{
    QFETCH(bool, isHorizontal);
    QFETCH(int, before);
    QFETCH(int, index);
    QFETCH(int, after);
    Fixture f;
    Params params;
    params.alignment = Qt::Alignment(QFlag(before));
    f.widget.SetValue(params);
    if (isHorizontal)
        f.widget.OnHorizontalAlignmentChanged(index);
    else
        f.widget.OnVerticalAlignmentChanged(index);
    QCOMPARE(int(f.widget.GetValue().alignment), after);
    QCOMPARE(f.changes.Take(), OneChange());
}

void TestYDSignWidget::AlignmentsAreShown_data()
{
    QTest::addColumn<int>("alignment");
    QTest::addColumn<int>("horizontal");
    QTest::addColumn<int>("vertical");
    QTest::newRow("left, top") << 0x21 << 0 << 0;
    QTest::newRow("right, bottom") << 0x42 << 2 << 2;
    QTest::newRow("centre") << 0x84 << 1 << 1;
    QTest::newRow("none") << 0 << 0 << 0;
    QTest::newRow("all") << -1 << 0 << 0;
    QTest::newRow("right and centre across") << 0x26 << 1 << 0;
    QTest::newRow("left and right") << 0x23 << 0 << 0;
    QTest::newRow("bottom and centre down") << 0xc1 << 0 << 1;
    QTest::newRow("top and bottom") << 0x61 << 0 << 0;
    QTest::newRow("justified, at the base line") << 0x108 << 0 << 0;
    QTest::newRow("lowest") << Lowest << 0 << 0;
}

void TestYDSignWidget::AlignmentsAreShown()
{
    QFETCH(int, alignment);
    QFETCH(int, horizontal);
    QFETCH(int, vertical);
    Fixture f;
    f.horizontal->setCurrentIndex(1);
    f.vertical->setCurrentIndex(1);
    Params params;
    params.alignment = Qt::Alignment(QFlag(alignment));
    f.widget.SetValue(params);
    QCOMPARE(f.horizontal->currentIndex(), horizontal);
    QCOMPARE(f.vertical->currentIndex(), vertical);
    QCOMPARE(int(f.widget.GetValue().alignment), alignment);
}

void TestYDSignWidget::AnyNumbersAreKept_data()
{
    QTest::addColumn<int>("number");
    for (const int number : {Lowest, -1, 0, 1000, Highest})
        QTest::newRow(qPrintable(QString::number(number))) << number;
}

void TestYDSignWidget::AnyNumbersAreKept()
{
    QFETCH(int, number);
    const int opposite = number == Highest ? Lowest : Highest;
    const QByteArray bytes =
        Stored(number, {opposite, number, number, opposite}, QStringLiteral("x"), number, number);
    QDataStream stream(bytes);
    Params params;
    QVERIFY(params.Read(stream));
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(Written(f.widget.GetValue()), bytes);
    QCOMPARE(f.left->value(), qBound(0, opposite, 999));
    QCOMPARE(f.top->value(), qBound(0, number, 999));
    QCOMPARE(f.opacity->value(), qBound(0, number, 100));
    QCOMPARE(f.opacitySlider->value(), f.opacity->value());
    f.right->setValue(f.right->value() == 17 ? 18 : 17); // one edge, the others stay
    QCOMPARE(f.widget.GetValue().margins.left(), opposite);
    QCOMPARE(f.widget.GetValue().margins.right(), 17);
    QCOMPARE(f.changes.Take(), OneChange());
}

void TestYDSignWidget::ALongFileNameIsKept()
{
    const QString name = QStringLiteral("/") + QString(10'000'000, QChar(0x4e2d));
    QDataStream stream(Stored(33, {5, 5, 5, 5}, name, 0, 100));
    Params params;
    stream >> params;
    QVERIFY(params.fileName == name);
    Fixture f;
    f.widget.SetValue(params);
    QVERIFY(f.widget.GetValue().fileName == name);
    QCOMPARE(f.changes.Take(), QString());
}

void TestYDSignWidget::ALengthBeyondTheBytesThereFails()
{
    for (const char* const length : {"fffffffe", "fffffffd", "80000000", "7ffffffe", "00000010"}) {
        QByteArray bytes = Stored(33, {5, 5, 5, 5}, QString(), 0, 100);
        bytes.replace(14 + 20, 4, QByteArray::fromHex(length));
        QDataStream stream(bytes);
        Params params;
        QVERIFY2(!params.Read(stream), length);
    }
}

void TestYDSignWidget::ChoosingAFileSetsItsName()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("stamp.png"));
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    Fixture f;
    InTheDialog<QFileDialog>([&file](QFileDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select an image"));
        QCOMPARE(dialog.nameFilters(), QStringList{QStringLiteral("Pictures (*.png)")});
        Choose(dialog, file);
    });
    f.select->click();
    QCOMPARE(f.widget.GetValue().fileName, file);
    QCOMPARE(f.fileName->text(), file);
    QCOMPARE(f.changes.Take(), OneChange());
    InTheDialog<QFileDialog>([&file](QFileDialog& dialog) { Choose(dialog, file); });
    QCOMPARE(f.widget.GetOpenFileNames(), QStringList{file});
    QCOMPARE(f.changes.Take(), QString());
}

void TestYDSignWidget::CancellingTheFileDialogChangesNothing()
{
    Fixture f;
    f.widget.SetValue(Sample());
    InTheDialog<QFileDialog>([](QFileDialog& dialog) { dialog.reject(); });
    f.select->click();
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Sample()));
    QCOMPARE(f.fileName->text(), Sample().fileName);
    QCOMPARE(f.changes.Take(), QString());
}

void TestYDSignWidget::TheFileDialogBeginsWhereTheLastFileIs()
{
    const QTemporaryDir folder;
    const QTemporaryDir other;
    KVApplication::SetPathOpen(other.path());
    Fixture f;
    Params params;
    params.fileName = folder.filePath(QStringLiteral("gone.png"));
    f.widget.SetValue(params);
    QString began;
    InTheDialog<QFileDialog>([&began](QFileDialog& dialog) { began = dialog.directory().canonicalPath(); });
    f.select->click();
    QCOMPARE(began, QDir(folder.path()).canonicalPath());
}

void TestYDSignWidget::TheFileDialogBeginsWhereTheHostWasLast()
{
    const QTemporaryDir folder;
    KVApplication::SetPathOpen(folder.path());
    Fixture f;
    QString began;
    InTheDialog<QFileDialog>([&began](QFileDialog& dialog) { began = dialog.directory().canonicalPath(); });
    f.select->click();
    QCOMPARE(began, QDir(folder.path()).canonicalPath());
}

void TestYDSignWidget::WithoutReadablePicturesThereIsNoFileDialog()
{
    ReadableKinds().clear();
    Fixture f;
    bool isOpened = false;
    QTimer::singleShot(0, &f.widget, [&isOpened] {
        if (QWidget* const dialog = QApplication::activeModalWidget()) {
            isOpened = true;
            dialog->close();
        }
    });
    QCOMPARE(f.widget.GetOpenFileNames(), QStringList());
    f.select->click();
    QCoreApplication::processEvents();
    QVERIFY(!isOpened);
    QVERIFY(!f.widget.findChild<QFileDialog*>());
    QCOMPARE(f.changes.Take(), QString());
}

void TestYDSignWidget::TheWidgetMayGoWhileTheFileDialogIsOpen()
{
    auto widget = std::make_unique<YDSignWidget>(nullptr, Qt::WindowFlags());
    InTheDialog<QFileDialog>([&widget](QFileDialog&) { widget.reset(); });
    widget->OnSelectFileName();
    QVERIFY(!widget);
}

QTEST_MAIN(TestYDSignWidget)
#include "tst_YDSignWidget.moc"
