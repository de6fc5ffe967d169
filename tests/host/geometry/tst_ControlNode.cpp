#include "geometry/ControlNode.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QSignalSpy>
#include <QTest>

Q_DECLARE_METATYPE(Qt::MouseButton)

namespace {

constexpr double SceneSide = 255.0;

/// A node in the middle of a view that shows its scene at some scale.
struct Fixture
{
    explicit Fixture(const QSize& size = {400, 300})
    {
        view.setFrameShape(QFrame::NoFrame);
        view.setScene(&scene);
        view.resize(size);
        view.show();
        view.fitInView(scene.sceneRect(), Qt::IgnoreAspectRatio);
        node->setPos(SceneSide / 2, SceneSide / 2);
        scene.addItem(node);
    }

    QPoint Middle() const { return view.mapFromScene(node->pos()); }
    void Press(const QPoint& offset, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(view.viewport(), button, Qt::KeyboardModifiers(), Middle() + offset);
    }
    void Release(const QPoint& offset, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(view.viewport(), button, Qt::KeyboardModifiers(), Middle() + offset);
    }
    /// Pixels around the node that differ from the background, as seen on the screen.
    QRect SeenArea()
    {
        const QImage image = view.grab().toImage();
        const QRgb background = image.pixel(0, 0);
        QRect area;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixel(x, y) != background)
                    area |= QRect(x, y, 1, 1);
        const double ratio = image.devicePixelRatio();
        return {qRound(area.x() / ratio), qRound(area.y() / ratio), qRound(area.width() / ratio),
                qRound(area.height() / ratio)};
    }

    QGraphicsScene scene{0, 0, SceneSide, SceneSide};
    QGraphicsView view;
    ControlNode* const node = new ControlNode;
};

} // namespace

class TestControlNode : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<Qt::MouseButton>("Qt::MouseButton"); }

    void TellsOfPressesAndReleases_data();
    void TellsOfPressesAndReleases();
    void IsGrabbedFromNearby();
    void IsNotGrabbedFromAfar();
    void LooksTheSameAtAnyScale();
    void LooksSunkenWhileItIs();
    void LooksLargerUnderTheMouse();
    void ShowsTheFocus();
    void MayBeDeletedByWhoHearsOfThePress();
};

void TestControlNode::TellsOfPressesAndReleases_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("left") << Qt::LeftButton;
    QTest::newRow("right") << Qt::RightButton;
}

void TestControlNode::TellsOfPressesAndReleases()
{
    QFETCH(Qt::MouseButton, button);
    Fixture f;
    QSignalSpy pressed(f.node, &ControlNode::mousePressed);
    QSignalSpy released(f.node, &ControlNode::mouseReleased);
    f.Press({0, 0}, button);
    QCOMPARE(pressed.count(), 1);
    QCOMPARE(pressed[0][0].value<ControlNode*>(), f.node);
    QCOMPARE(pressed[0][1].value<Qt::MouseButton>(), button);
    QCOMPARE(released.count(), 0);
    f.Release({60, 60}, button); // wherever the mouse has gone meanwhile
    QCOMPARE(released.count(), 1);
    QCOMPARE(released[0][0].value<ControlNode*>(), f.node);
    QCOMPARE(f.node->pos(), QPointF(SceneSide / 2, SceneSide / 2));
}

void TestControlNode::IsGrabbedFromNearby()
{
    for (const QSize& size : {QSize(120, 700), QSize(900, 200)}) {
        Fixture f(size);
        QSignalSpy pressed(f.node, &ControlNode::mousePressed);
        for (const QPoint& offset : {QPoint(5, 0), QPoint(-5, 0), QPoint(0, 5), QPoint(4, -4)}) {
            f.Press(offset);
            f.Release(offset);
        }
        QCOMPARE(pressed.count(), 4);
    }
}

void TestControlNode::IsNotGrabbedFromAfar()
{
    Fixture f;
    QSignalSpy pressed(f.node, &ControlNode::mousePressed);
    for (const QPoint& offset : {QPoint(8, 0), QPoint(0, -8), QPoint(6, 6)}) {
        f.Press(offset);
        f.Release(offset);
    }
    QCOMPARE(pressed.count(), 0);
}

void TestControlNode::LooksTheSameAtAnyScale()
{
    for (const QSize& size : {QSize(120, 700), QSize(900, 200), QSize(256, 256)}) {
        Fixture f(size);
        const QRect area = f.SeenArea();
        QVERIFY2(area.width() >= 8 && area.width() <= 12, qPrintable(QString::number(area.width())));
        QVERIFY(qAbs(area.width() - area.height()) <= 1);
        QVERIFY((area.center() - f.Middle()).manhattanLength() <= 2);
    }
}

void TestControlNode::LooksSunkenWhileItIs()
{
    Fixture f;
    QVERIFY(!f.node->isSunken());
    const QImage raised = f.view.grab().toImage();
    f.node->setSunken(true);
    QVERIFY(f.node->isSunken());
    const QImage sunken = f.view.grab().toImage();
    const QPoint middle = f.Middle() * sunken.devicePixelRatio();
    QCOMPARE(raised.pixelColor(middle), QColor(Qt::white));
    QCOMPARE(sunken.pixelColor(middle), f.view.palette().color(QPalette::Highlight));
    f.node->setSunken(false);
    QCOMPARE(f.view.grab().toImage(), raised);
}

void TestControlNode::LooksLargerUnderTheMouse()
{
    Fixture f;
    QVERIFY(QTest::qWaitForWindowExposed(&f.view));
    const int width = f.SeenArea().width();
    QTest::mouseMove(f.view.viewport(), f.Middle());
    QTRY_VERIFY(f.SeenArea().width() > width);
    QTest::mouseMove(f.view.viewport(), QPoint(3, 3));
    QTRY_COMPARE(f.SeenArea().width(), width);
}

void TestControlNode::ShowsTheFocus()
{
    Fixture f;
    f.view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&f.view));
    const int width = f.SeenArea().width();
    f.node->setFocus();
    QVERIFY(f.node->hasFocus());
    QVERIFY(f.SeenArea().width() > width);
    QVERIFY(f.SeenArea().width() <= 2 * ControlNode::Reach);
}

void TestControlNode::MayBeDeletedByWhoHearsOfThePress()
{
    Fixture f;
    connect(f.node, &ControlNode::mousePressed, this, [](ControlNode* node) { delete node; });
    const QPoint place = f.Middle();
    f.Press({0, 0});
    QVERIFY(f.scene.items().isEmpty());
    QTest::mouseRelease(f.view.viewport(), Qt::LeftButton, Qt::KeyboardModifiers(), place);
}

QTEST_MAIN(TestControlNode)
#include "tst_ControlNode.moc"
