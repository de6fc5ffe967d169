// A thread that starts_no_thread.cpp must refuse: did it let this one start, it would let every other.

#include <QThread>
#include <QtTest>

class PlantedThread : public QObject
{
    Q_OBJECT

private slots:
    void StartsAThread()
    {
        QThread thread;
        thread.start();
        thread.quit();
        QVERIFY(thread.wait());
    }
};

QTEST_GUILESS_MAIN(PlantedThread)
#include "planted_thread.moc"
