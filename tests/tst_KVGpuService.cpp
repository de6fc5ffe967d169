#include "TestPictures.h"
#include "gpu/KVGpuService.h"
#include "gpu/OpenClDevice.h"
#include "gpu/SelectiveColorsJob.h"
#include "gpu/SelectiveColorsOnCpu.h"

#include <QSignalSpy>
#include <QtTest>
class TestKVGpuService : public QObject
{
    Q_OBJECT
private slots:
    void First();
};
void TestKVGpuService::First()
{
    KVGpuService* const service = KVGpuService::get_instance();
    QVERIFY(service);
    qDebug() << service->device_name();
    QSignalSpy spy(service, &KVGpuService::finished);
    const RGBA32iImage image = TestPictures::Random(301, 57, 3);
    QList<SelectiveParams> list;
    for (int i = 0; i < 9; ++i) list.append({float(i * 20 - 100), float(50 - i * 7), float(i * 3), float(i * i - 50)});
    const quint64 n = service->process_selective_color(image.SharedPixels(), 301, 57, list, Mode::Relative, nullptr, 0, 0, 0, 0, false);
    QVERIFY(spy.wait(20000));
    const auto got = spy.at(0).at(0).value<RGBA32iImage>();
    QCOMPARE(service->request_of(got), n);
    SelectiveColorsJob job;
    job.source = {image.SharedPixels(), 301, 57, image.RowLength()};
    job.rule = SelectiveColorsRule(list, Mode::Relative);
    RGBA32iImage want(301, 57);
    std::atomic<bool> abort{false};
    QVERIFY(AdjustSelectiveColorsOnCpu(job, want, abort));
    QVERIFY(TestPictures::AreEqual(got, want));
}
QTEST_GUILESS_MAIN(TestKVGpuService)
#include "tst_KVGpuService.moc"
