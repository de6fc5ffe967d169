#include "BenchOptions.h"

#include <QTest>

namespace {

/// Arguments as main() gets them.
struct Arguments
{
    explicit Arguments(const QByteArrayList& arguments) : texts(arguments)
    {
        for (QByteArray& text : texts)
            values.push_back(text.data());
        count = int(values.size());
        values.push_back(nullptr);
    }

    QByteArrayList Left() const
    {
        QByteArrayList left;
        for (int i = 0; i < count; ++i)
            left.append(values[std::size_t(i)]);
        return left;
    }

    QByteArrayList texts;
    std::vector<char*> values;
    int count = 0;
};

} // namespace

class TestBenchOptions : public QObject
{
    Q_OBJECT

private slots:
    void TakesItsOwnAndLeavesTheRest();
    void WithoutAnyThereAreDefaults();
    void SizesAreMegapixels_data();
    void SizesAreMegapixels();
};

void TestBenchOptions::TakesItsOwnAndLeavesTheRest()
{
    Arguments arguments({"bench", "--json=run.json", "--benchmark_filter=gamma", "--table",
                         "--against=old.json", "--sizes=1,100", "--jsonx"});
    BenchOptions options;
    QCOMPARE(options.Take(arguments.count, arguments.values.data()), QString());
    QCOMPARE(options.json, QStringLiteral("run.json"));
    QCOMPARE(options.against, QStringLiteral("old.json"));
    QVERIFY(options.isTableWanted);
    QCOMPARE(options.megapixels, (std::vector<int>{1, 100}));
    QCOMPARE(arguments.Left(), (QByteArrayList{"bench", "--benchmark_filter=gamma", "--jsonx"}));
    QCOMPARE(arguments.values[std::size_t(arguments.count)], nullptr);
}

void TestBenchOptions::WithoutAnyThereAreDefaults()
{
    Arguments arguments({"bench"});
    BenchOptions options;
    QCOMPARE(options.Take(arguments.count, arguments.values.data()), QString());
    QCOMPARE(options.megapixels, (std::vector<int>{24}));
    QVERIFY(options.json.isEmpty() && options.against.isEmpty() && !options.isTableWanted);
}

void TestBenchOptions::SizesAreMegapixels_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QString>("wrong"); // what is named
    QTest::newRow("one") << QByteArray("6") << QString();
    QTest::newRow("the largest") << QByteArray("1000") << QString();
    QTest::newRow("none") << QByteArray("") << QStringLiteral("\"\"");
    QTest::newRow("zero") << QByteArray("6,0") << QStringLiteral("\"0\"");
    QTest::newRow("too large") << QByteArray("1001") << QStringLiteral("\"1001\"");
    QTest::newRow("a word") << QByteArray("6,large") << QStringLiteral("\"large\"");
}

void TestBenchOptions::SizesAreMegapixels()
{
    QFETCH(QByteArray, list);
    QFETCH(QString, wrong);
    Arguments arguments({"bench", "--sizes=" + list});
    BenchOptions options;
    const QString problem = options.Take(arguments.count, arguments.values.data());
    QCOMPARE(problem.isEmpty(), wrong.isEmpty());
    QVERIFY2(problem.contains(wrong), qPrintable(problem));
    QCOMPARE(arguments.count, 1);
}

QTEST_GUILESS_MAIN(TestBenchOptions)
#include "tst_BenchOptions.moc"
