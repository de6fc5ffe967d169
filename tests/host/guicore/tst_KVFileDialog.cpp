#include "guicore/KVFileDialog.h"

#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace {

/// Calls `act` with the file dialog that is open, in its event loop.
void InTheDialog(const std::function<void(QFileDialog&)>& act)
{
    QTimer::singleShot(0, qApp, [act] {
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        act(*dialog);
    });
}

} // namespace

class TestKVFileDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void AsksForOneExistingFile();
    void CancellingGivesNoName();
    void StartsAtAFile();
    void StartsAtHomeWhereThereIsNoSuchFolder_data();
    void StartsAtHomeWhereThereIsNoSuchFolder();
    void AParentThatGoesMeanwhileGivesNoName();

private:
    QString Ask(QWidget* parent, const QString& directory) const
    {
        return KVFileDialog::GetOpenFileName(parent, QStringLiteral("Select an image"), directory,
                                             QStringLiteral("Pictures (*.png);;All (*)"));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
};

void TestKVFileDialog::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_file = m_folder->filePath(QStringLiteral("picture.png"));
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

void TestKVFileDialog::AsksForOneExistingFile()
{
    InTheDialog([this](QFileDialog& dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select an image"));
        QCOMPARE(dialog.fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(dialog.acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(dialog.directory().canonicalPath(), QDir(m_folder->path()).canonicalPath());
        QCOMPARE(dialog.nameFilters(),
                 QStringList({QStringLiteral("Pictures (*.png)"), QStringLiteral("All (*)")}));
        dialog.selectFile(m_file);
        static_cast<QDialog&>(dialog).done(QDialog::Accepted);
    });
    QWidget parent;
    QCOMPARE(Ask(&parent, m_folder->path()), m_file);
    QVERIFY(parent.findChildren<QFileDialog*>().isEmpty());
}

void TestKVFileDialog::CancellingGivesNoName()
{
    InTheDialog([this](QFileDialog& dialog) {
        dialog.selectFile(m_file);
        dialog.reject();
    });
    QCOMPARE(Ask(nullptr, m_folder->path()), QString());
}

void TestKVFileDialog::StartsAtAFile()
{
    InTheDialog([this](QFileDialog& dialog) {
        QCOMPARE(dialog.directory().canonicalPath(), QDir(m_folder->path()).canonicalPath());
        QCOMPARE(dialog.selectedFiles(), QStringList(m_file));
        dialog.reject();
    });
    Ask(nullptr, m_file);
}

void TestKVFileDialog::StartsAtHomeWhereThereIsNoSuchFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("gone") << QStringLiteral("gone");
    QTest::newRow("gone with its folder") << QStringLiteral("gone/too");
    QTest::newRow("too long for a name") << QString(5000, QLatin1Char('n'));
}

void TestKVFileDialog::StartsAtHomeWhereThereIsNoSuchFolder()
{
    QFETCH(QString, name);
    InTheDialog([](QFileDialog& dialog) {
        QCOMPARE(dialog.directory().canonicalPath(), QDir::home().canonicalPath());
        auto* const fileName = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        QVERIFY(fileName);
        QCOMPARE(fileName->text(), QString()); // nothing that the user would have to delete
        dialog.reject();
    });
    Ask(nullptr, m_folder->filePath(name));
}

void TestKVFileDialog::AParentThatGoesMeanwhileGivesNoName()
{
    auto parent = std::make_unique<QWidget>();
    InTheDialog([&parent](QFileDialog&) { parent.reset(); });
    QCOMPARE(Ask(parent.get(), m_folder->path()), QString());
}

QTEST_MAIN(TestKVFileDialog)
#include "tst_KVFileDialog.moc"
