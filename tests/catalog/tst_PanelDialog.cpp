#include "TestPictures.h"
#include "catalog/PanelDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>

namespace {

constexpr int PatienceMs = 30000;
constexpr int Grey = 90;

/// A panel that makes pictures grey, if its settings are in order.
class Panel : public YDTaskWidget
{
public:
    Panel() : YDTaskWidget(false, nullptr, Qt::WindowFlags()) { setWindowTitle(QStringLiteral("Grey")); }

    void Set(const QString& problem, const QString& lack)
    {
        m_problem = problem;
        m_lack = lack;
        AnnounceChange(&Panel::Changed);
    }

    operations::Task MakeTask() const override
    {
        return operations::Task([problem = m_problem](const YDAdjustmentJob& job) -> operations::Outcome {
            for (int y = 0; problem.isEmpty() && y < job.image.Height(); ++y)
                std::fill_n(job.image.Row(y), job.image.Width(), YDRGBA32i(Grey, Grey, Grey, 255));
            return {job.image, problem};
        });
    }
    QString WhatIsMissing() const override { return m_lack; }
    void Reset() override { Set({}, {}); }

private:
    void Changed() {}

    QString m_problem;
    QString m_lack;
};

/// A dialog around a panel, and what it shows.
struct Bench
{
    Bench()
    {
        auto owned = std::make_unique<Panel>();
        panel = owned.get();
        dialog = std::make_unique<PanelDialog>(std::move(owned), nullptr);
        remark = dialog->findChild<QLabel*>(QStringLiteral("Remark"));
    }

    /// What the label says once there is a preview; none where it is hidden.
    QString RemarkOf(const QString& problem, const QString& lack)
    {
        QSignalSpy ready(dialog.get(), &YDAdjustmentWidget::ImageReady);
        panel->Set(problem, lack);
        dialog->SetImage(TestPictures::Noise(20, 10), RGBA32iImage(), QPoint(), QRect());
        if (!QTest::qWaitFor([&] { return ready.count() > 0; }, PatienceMs))
            return QStringLiteral("no preview came");
        return remark->isHidden() ? QString() : remark->text();
    }

    std::unique_ptr<PanelDialog> dialog;
    Panel* panel = nullptr;
    QLabel* remark = nullptr;
};

} // namespace

class TestPanelDialog : public QObject
{
    Q_OBJECT

private slots:
    void ThePanelStandsInTheFrameOfADialog();
    void ThePanelIsFoundInItsDialogAndInItself();
    void TheTaskIsThatOfThePanel();
    void TheDialogAnnouncesWhatThePanelDoes();
    void ResetIsThatOfThePanel();
    void TheRemarkSaysWhatIsWrong_data();
    void TheRemarkSaysWhatIsWrong();
    void AMarkupInAPathIsShownAsItIs();
    void ALongPathMayBeBroken();
};

void TestPanelDialog::ThePanelStandsInTheFrameOfADialog()
{
    const Bench bench;
    QVERIFY(bench.dialog->findChild<QDialogButtonBox*>(QStringLiteral("m_pButtons")));
    QVERIFY(bench.dialog->isAncestorOf(bench.panel));
    QCOMPARE(bench.dialog->GetWidgetName(), QStringLiteral("Grey"));
    QVERIFY(bench.remark->isHidden());
}

void TestPanelDialog::ThePanelIsFoundInItsDialogAndInItself()
{
    const Bench bench;
    QCOMPARE(&PanelDialog::PanelOf(*bench.dialog), bench.panel);
    QCOMPARE(&PanelDialog::PanelOf(*bench.panel), bench.panel);
    const YDTaskWidget& dialog = *bench.dialog;
    QCOMPARE(&PanelDialog::PanelOf(dialog), bench.panel);
}

void TestPanelDialog::TheTaskIsThatOfThePanel()
{
    const Bench bench;
    const RGBA32iImage grey = TestPictures::Grey(20, 10, Grey);
    const RGBA32iImage source = TestPictures::Noise(20, 10);
    QVERIFY(TestPictures::AreEqual(bench.dialog->MakeTask().ApplyToCopy(source).picture, grey));
    RGBA32iImage picture = source.DeepCopy();
    bench.dialog->ConvertImage(picture, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(TestPictures::AreEqual(picture, grey));
}

void TestPanelDialog::TheDialogAnnouncesWhatThePanelDoes()
{
    const Bench bench;
    QSignalSpy params(bench.dialog.get(), &KVAdjustmentWidget::UserParamsChanged);
    QSignalSpy data(bench.dialog.get(), &YDAdjustmentWidget::DataChanged);
    bench.panel->Set({}, {});
    QCOMPARE(params.count(), 1);
    QCOMPARE(data.count(), 1);
}

void TestPanelDialog::ResetIsThatOfThePanel()
{
    const Bench bench;
    bench.panel->Set({}, QStringLiteral("A name is missing."));
    QCOMPARE(bench.dialog->WhatIsMissing(), QStringLiteral("A name is missing."));
    auto* const buttons = bench.dialog->findChild<QDialogButtonBox*>(QStringLiteral("m_pButtons"));
    buttons->button(QDialogButtonBox::Reset)->click();
    QCOMPARE(bench.panel->WhatIsMissing(), QString());
}

void TestPanelDialog::TheRemarkSaysWhatIsWrong_data()
{
    QTest::addColumn<QString>("problem");
    QTest::addColumn<QString>("lack");
    QTest::addColumn<QString>("remark");
    QTest::newRow("nothing") << ""
                             << ""
                             << "";
    QTest::newRow("a lack") << ""
                            << "A name is missing."
                            << "A name is missing.";
    QTest::newRow("a problem") << "It is no picture."
                               << ""
                               << "It is no picture.";
    QTest::newRow("a problem comes first") << "It is no picture."
                                           << "A name is missing."
                                           << "It is no picture.";
}

void TestPanelDialog::TheRemarkSaysWhatIsWrong()
{
    QFETCH(QString, problem);
    QFETCH(QString, lack);
    Bench bench;
    QTEST(bench.RemarkOf(problem, lack), "remark");
    QCOMPARE(bench.RemarkOf({}, {}), QString()); // and goes with what was wrong
}

void TestPanelDialog::AMarkupInAPathIsShownAsItIs()
{
    Bench bench;
    QCOMPARE(bench.RemarkOf(QStringLiteral("<b>a.png: no picture"), {}),
             QStringLiteral("<b>a.png: no picture"));
    QCOMPARE(bench.remark->textFormat(), Qt::PlainText);
}

void TestPanelDialog::ALongPathMayBeBroken()
{
    Bench bench;
    const QString path = QStringLiteral("/home/someone/pictures/of/last/summer/stamp.png");
    const QString remark = bench.RemarkOf(path, {});
    QCOMPARE(remark.count(QStringLiteral("/\u200b")), path.count(QLatin1Char('/')));
    QCOMPARE(QString(remark).remove(QChar(0x200b)), path);
}

QTEST_MAIN(TestPanelDialog)
#include "tst_PanelDialog.moc"
