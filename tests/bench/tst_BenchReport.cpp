#include "BenchReport.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

namespace {

BenchReport::Counters Ratio(double low, double median, double high)
{
    return {{"ratio", median}, {"ratio_low", low}, {"ratio_high", high}};
}

} // namespace

class TestBenchReport : public QObject
{
    Q_OBJECT

private slots:
    void WhatIsWrittenIsRead();
    void WhatIsNoRunIsRefused_data();
    void WhatIsNoRunIsRefused();
    void AFailedWriteTellsWhy();
    void AChangeIsBeyondTheNoiseOfBothRuns_data();
    void AChangeIsBeyondTheNoiseOfBothRuns();
    void TheSlowestComesFirst();
    void RowsOfOneRunAloneAreNoChange();
    void AMachineThatWandersIsNoChange();
};

void TestBenchReport::WhatIsWrittenIsRead()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("run.json");
    BenchReport report;
    report.machine = {{"processor", "one"}, {"cores", 2}};
    report.rows["24MP/gamma/vector"] = {{"ms", 3.25}, {"ratio", 1.5}};
    report.rows["24MP/deep-copy"] = {{"ms", std::numeric_limits<double>::infinity()}};
    QCOMPARE(report.Write(file), QString());
    BenchReport read;
    QCOMPARE(read.Read(file), QString());
    QCOMPARE(read.machine, report.machine);
    QCOMPARE(read.rows,
             (QMap<QString, BenchReport::Counters>{{"24MP/gamma/vector", {{"ms", 3.25}, {"ratio", 1.5}}}}));
}

void TestBenchReport::WhatIsNoRunIsRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut") << QByteArray(R"({"adjustmentgui_bench": 1, "rows": {)");
    QTest::newRow("a list") << QByteArray("[1]");
    QTest::newRow("another format") << QByteArray(R"({"adjustmentgui_bench": 2, "rows": {}})");
    QTest::newRow("no rows") << QByteArray(R"({"adjustmentgui_bench": 1})");
}

void TestBenchReport::WhatIsNoRunIsRefused()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    QFile file(folder.filePath("run.json"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    BenchReport report;
    report.rows["kept"] = {{"ms", 1.0}};
    QVERIFY(report.Read(file.fileName()).contains("holds no run of the benchmarks"));
    QVERIFY(report.Read(folder.filePath("there is none")).contains("there is none"));
    QVERIFY(report.rows.contains("kept"));
}

void TestBenchReport::AFailedWriteTellsWhy()
{
    const QTemporaryDir folder;
    QVERIFY(BenchReport().Write(folder.filePath("no folder/run.json")).contains("run.json"));
}

void TestBenchReport::AChangeIsBeyondTheNoiseOfBothRuns_data()
{
    QTest::addColumn<BenchReport::Counters>("before");
    QTest::addColumn<BenchReport::Counters>("now");
    QTest::addColumn<bool>("isChange");
    QTest::newRow("slower") << Ratio(0.9, 1.0, 1.1) << Ratio(1.2, 1.3, 1.4) << true;
    QTest::newRow("faster") << Ratio(1.2, 1.3, 1.4) << Ratio(0.9, 1.0, 1.1) << true;
    QTest::newRow("within the noise before") << Ratio(0.9, 1.0, 1.3) << Ratio(1.2, 1.3, 1.4) << false;
    QTest::newRow("within the noise now") << Ratio(0.9, 1.0, 1.1) << Ratio(1.0, 1.3, 1.4) << false;
    QTest::newRow("too little to speak of") << Ratio(1.0, 1.0, 1.0) << Ratio(1.02, 1.02, 1.02) << false;
    QTest::newRow("the same") << Ratio(0.9, 1.0, 1.1) << Ratio(0.9, 1.0, 1.1) << false;
    QTest::newRow("no quartiles") << BenchReport::Counters{{"ratio", 1.0}} << Ratio(1.9, 2.0, 2.1) << false;
    QTest::newRow("nonsense") << Ratio(2.0, 1.0, 0.5) << Ratio(2.9, 3.0, 3.1) << false;
}

void TestBenchReport::AChangeIsBeyondTheNoiseOfBothRuns()
{
    QFETCH(BenchReport::Counters, before);
    QFETCH(BenchReport::Counters, now);
    QFETCH(bool, isChange);
    BenchReport first;
    BenchReport second;
    first.rows["row"] = before;
    second.rows["row"] = now;
    const QVector<BenchReport::Change> changes = second.ChangesSince(first);
    QCOMPARE(changes.size(), isChange ? 1 : 0);
    if (!isChange)
        return;
    QCOMPARE(changes.front().before, before.value("ratio"));
    QCOMPARE(changes.front().now, now.value("ratio"));
}

void TestBenchReport::TheSlowestComesFirst()
{
    BenchReport before;
    BenchReport now;
    for (const char* row : {"a", "b", "c"})
        before.rows[row] = Ratio(1.0, 1.0, 1.0);
    now.rows["a"] = Ratio(0.5, 0.5, 0.5);
    now.rows["b"] = Ratio(3.0, 3.0, 3.0);
    now.rows["c"] = Ratio(2.0, 2.0, 2.0);
    QStringList order;
    for (const BenchReport::Change& change : now.ChangesSince(before))
        order.append(change.row);
    QCOMPARE(order, (QStringList{"b", "c", "a"}));
}

void TestBenchReport::RowsOfOneRunAloneAreNoChange()
{
    BenchReport before;
    BenchReport now;
    before.rows["gone"] = Ratio(1.0, 1.0, 1.0);
    now.rows["new"] = Ratio(2.0, 2.0, 2.0);
    QVERIFY(now.ChangesSince(before).isEmpty());
}

void TestBenchReport::AMachineThatWandersIsNoChange()
{
    BenchReport before;
    BenchReport now;
    for (int i = 0; i < 20; ++i) {
        const double factor = i % 2 == 0 ? 1.05 : 1 / 1.05; // without any noise within a run
        before.rows[QString::number(i)] = Ratio(1.0, 1.0, 1.0);
        now.rows[QString::number(i)] = Ratio(factor, factor, factor);
    }
    QVERIFY(now.ChangesSince(before).isEmpty());
    now.rows["7"] = Ratio(1.25, 1.25, 1.25);
    const QVector<BenchReport::Change> changes = now.ChangesSince(before);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.front().row, QStringLiteral("7"));
}

QTEST_GUILESS_MAIN(TestBenchReport)
#include "tst_BenchReport.moc"
