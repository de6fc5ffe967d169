#include "YDBrightnessContrastWidget.h"
#include "catalog/AdjustmentCatalog.h"
#include "catalog/AdjustmentDialog.h"
#include "catalog/AdjustmentSession.h"
#include "editor/PresetMenu.h"
#include "gui/KVDocumentView.h"

#include "TestPictures.h"

#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int PatienceMs = 20000;

const AdjustmentEntry& Brightness()
{
    return *AdjustmentCatalog::Find(QStringLiteral("brightness-contrast"));
}

QByteArray PresetOf(int brightness, int contrast)
{
    const auto settings = Brightness().makeSettings();
    const QJsonObject values{{QStringLiteral("brightness"), brightness},
                             {QStringLiteral("contrast"), contrast}};
    return settings->FromJson(values).isEmpty() ? settings->ToPreset() : QByteArray();
}

QVector<QMessageBox*> MessageBoxes()
{
    QVector<QMessageBox*> boxes;
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const box = qobject_cast<QMessageBox*>(widget))
            if (box->isVisible())
                boxes.append(box);
    return boxes;
}

} // namespace

class TestPresetMenu : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void AStoredPresetComesBack();
    void AStoredPresetIsTheParameterStreamAlone();
    void StoredPresetsAreInTheMenu();
    void APresetThatIsNoneIsRefused_data();
    void APresetThatIsNoneIsRefused();
    void AFolderThatCannotBeWrittenIsNamed();
    void LoadingIntoADialogStartsAPreview();
    void AnAdjustmentWithoutPresetsDisablesTheMenuAndSaysWhy();

private:
    QString Path(const char* name) const { return m_folder->filePath(QString::fromUtf8(name)); }
    void WriteFile(const QString& path, const QByteArray& bytes) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<YDTaskWidget> m_widget;
    std::unique_ptr<PresetMenu> m_menu;
};

void TestPresetMenu::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_PresetMenu"));
}

void TestPresetMenu::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", m_folder->path().toLocal8Bit());
    m_widget = Brightness().makeWidget(false, nullptr);
    m_menu = std::make_unique<PresetMenu>();
    m_menu->SetTarget(Brightness(), m_widget.get());
}

void TestPresetMenu::cleanup()
{
    qDeleteAll(MessageBoxes());
    m_menu.reset();
    m_widget.reset();
}

void TestPresetMenu::WriteFile(const QString& path, const QByteArray& bytes) const
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

void TestPresetMenu::AStoredPresetComesBack()
{
    auto* const slider = m_widget->findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"));
    slider->setValue(41);
    m_menu->Save(Path("mine.preset"));
    slider->setValue(-3);
    QSignalSpy loaded(m_menu.get(), &PresetMenu::Loaded);
    m_menu->Load(Path("mine.preset"));
    QCOMPARE(slider->value(), 41);
    QCOMPARE(loaded.count(), 1);
    QVERIFY(MessageBoxes().isEmpty());
}

void TestPresetMenu::AStoredPresetIsTheParameterStreamAlone()
{
    m_widget->findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"))->setValue(20);
    m_widget->findChild<QSlider*>(QStringLiteral("m_pContrastSlider"))->setValue(30);
    m_menu->Save(Path("a folder/mine.preset"));
    QFile file(Path("a folder/mine.preset"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), PresetOf(20, 30));
}

void TestPresetMenu::StoredPresetsAreInTheMenu()
{
    const QString folder = PresetStore(Brightness()).Folder();
    QVERIFY(folder.startsWith(m_folder->path()));
    m_menu->Save(folder + QStringLiteral("/Dawn & dusk.preset"));
    m_menu->Save(folder + QStringLiteral("/another.preset"));
    emit m_menu->menu()->aboutToShow();
    const QList<QAction*> actions = m_menu->menu()->actions();
    QCOMPARE(actions.at(0)->text(), QStringLiteral("another"));
    QCOMPARE(actions.at(1)->text(), QStringLiteral("Dawn && dusk"));
    auto* const slider = m_widget->findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"));
    slider->setValue(50);
    actions.at(1)->trigger();
    QCOMPARE(slider->value(), 0);
}

void TestPresetMenu::APresetThatIsNoneIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("empty");
    QTest::newRow("something else") << QByteArray("hello") << QStringLiteral("does not begin");
    QTest::newRow("cut") << PresetOf(20, 30).chopped(1) << QStringLiteral("cut or damaged");
    QTest::newRow("too long") << PresetOf(20, 30) + 'x' << QStringLiteral("cut or damaged");
    QTest::newRow("of another adjustment")
        << AdjustmentCatalog::Find(QStringLiteral("temperature"))->makeSettings()->ToPreset()
        << QStringLiteral("it is a preset of “Temperature”, not of “Brightness and Contrast”");
}

void TestPresetMenu::APresetThatIsNoneIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    WriteFile(Path("bad.preset"), bytes);
    auto* const slider = m_widget->findChild<QSlider*>(QStringLiteral("m_pBrightnessSlider"));
    slider->setValue(17);
    QSignalSpy loaded(m_menu.get(), &PresetMenu::Loaded);
    m_menu->Load(Path("bad.preset"));
    QCOMPARE(slider->value(), 17);
    QCOMPARE(loaded.count(), 0);
    QCOMPARE(MessageBoxes().size(), 1);
    const QString why = MessageBoxes().constFirst()->informativeText();
    QVERIFY2(why.startsWith(Path("bad.preset: ")) && why.contains(reason), qPrintable(why));
}

void TestPresetMenu::AFolderThatCannotBeWrittenIsNamed()
{
    WriteFile(Path("file"), "x");
    m_menu->Save(Path("file/mine.preset"));
    QCOMPARE(MessageBoxes().size(), 1);
    QVERIFY(MessageBoxes().constFirst()->informativeText().contains(Path("file")));
}

void TestPresetMenu::LoadingIntoADialogStartsAPreview()
{
    WriteFile(Path("bright.preset"), PresetOf(100, 0));
    QWidget window;
    KVDocumentView view(&window);
    AdjustmentSession session(Brightness(), &view, &window);
    PresetMenu* const menu = PresetMenu::AddTo(session);
    session.Start(TestPictures::Grey(20, 10, 100), operations::Selection());
    QTRY_VERIFY_WITH_TIMEOUT(!view.Preview().IsEmpty(), PatienceMs);
    QCOMPARE(int(view.Preview().Row(0)[0].g), 100);
    menu->Load(Path("bright.preset"));
    QTRY_VERIFY_WITH_TIMEOUT(view.Preview().Row(0)[0].g > 150, PatienceMs);
}

void TestPresetMenu::AnAdjustmentWithoutPresetsDisablesTheMenuAndSaysWhy()
{
    QVERIFY(m_menu->isEnabled());
    const AdjustmentEntry& exposure = *AdjustmentCatalog::Find(QStringLiteral("exposure"));
    const auto widget = exposure.makeWidget(false, nullptr);
    m_menu->SetTarget(exposure, widget.get());
    QVERIFY(!m_menu->isEnabled());
    QVERIFY(m_menu->toolTip().contains(QStringLiteral("cannot be stored")));
    m_menu->SetTarget(Brightness(), m_widget.get());
    QVERIFY(m_menu->isEnabled());
    QVERIFY(!m_menu->toolTip().contains(QStringLiteral("cannot be stored")));
}

QTEST_MAIN(TestPresetMenu)
#include "tst_PresetMenu.moc"
