#include "support/Pictures.h"
#include "ui/CachedPicture.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QTest>

using ui::CachedPicture;

namespace {

constexpr QSize widgetExtent{40, 30};

void drawing(QPainter &painter)
{
    QLinearGradient colours{0.0, 0.0, 40.0, 30.0};
    colours.setColorAt(0.0, QColor{250, 20, 20});
    colours.setColorAt(1.0, QColor{20, 20, 250});
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours);
    painter.drawEllipse(QRectF{1.3, 2.1, 36.2, 25.4});
}

void opaqueDrawing(QPainter &painter)
{
    painter.fillRect(QRect{QPoint{0, 0}, widgetExtent}, QColor{12, 34, 56});
    drawing(painter);
}

QImage canvas(double ratio)
{
    QImage image{QSize{240, 240}, QImage::Format_RGB32};
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
}

} // namespace

class tst_CachedPicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksAsIfDrawnInPlace_data();
    void looksAsIfDrawnInPlace();
    void opaquePictureKeepsNoAlpha();
    void drawsOnceForManyFrames();
    void drawsAgainWhenInvalid();
    void drawsAgainAfterRelease();
    void drawsAgainForAnotherDevice_data();
    void drawsAgainForAnotherDevice();
    void leavesThePainterAsItWas();
    void keepsWithinTheClip();
};

void tst_CachedPicture::looksAsIfDrawnInPlace_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QPointF>("place");

    const double ratios[] = {1.0, 1.25, 1.5, 1.75, 2.0, 3.0};
    const QPointF places[] = {{0.0, 0.0}, {7.0, 5.0}, {3.3, 9.8}};
    for (const double ratio : ratios) {
        for (const QPointF &place : places) {
            QTest::addRow("ratio %g at %g, %g", ratio, place.x(), place.y()) << ratio << place;
        }
    }
}

void tst_CachedPicture::looksAsIfDrawnInPlace()
{
    QFETCH(double, ratio);
    QFETCH(QPointF, place);

    const auto image = [&](auto paint) {
        QImage result = canvas(ratio);
        QPainter painter{&result};
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(place);
        paint(painter);
        return result;
    };
    // A translucent edge is rounded once more on its way over the picture.
    constexpr int tolerance = 1;

    CachedPicture cached;
    const QImage shown =
        image([&](QPainter &painter) { cached.draw(painter, widgetExtent, &drawing); });
    const QImage direct = image(&drawing);
    QVERIFY(direct != canvas(ratio));
    QCOMPARE(support::difference(shown, direct, tolerance), QString{});
}

void tst_CachedPicture::opaquePictureKeepsNoAlpha()
{
    CachedPicture cached{CachedPicture::Background::Opaque};
    QImage shown = canvas(2.0);
    QImage direct = canvas(2.0);
    {
        QPainter painter{&shown};
        cached.draw(painter, widgetExtent, [](QPainter &picture) {
            const auto *const pixels = dynamic_cast<QPixmap *>(picture.device());
            QVERIFY(pixels != nullptr && !pixels->hasAlphaChannel());
            opaqueDrawing(picture);
        });
        QPainter directly{&direct};
        opaqueDrawing(directly);
    }
    QCOMPARE(shown, direct);
}

void tst_CachedPicture::drawsOnceForManyFrames()
{
    int drawn = 0;
    CachedPicture cached;
    for (int frame = 0; frame < 5; ++frame) {
        QImage image = canvas(1.5);
        QPainter painter{&image};
        painter.translate(7, 5);
        cached.draw(painter, widgetExtent, [&](QPainter & /*picture*/) { ++drawn; });
    }
    QCOMPARE(drawn, 1);
}

void tst_CachedPicture::drawsAgainWhenInvalid()
{
    CachedPicture cached;
    QImage image = canvas(1.0);
    QPainter painter{&image};
    cached.draw(painter, widgetExtent, &drawing);
    cached.invalidate();
    // Nothing of the former drawing is left in the new one.
    image.fill(Qt::white);
    cached.draw(painter, widgetExtent, [](QPainter & /*picture*/) {});
    QCOMPARE(image, canvas(1.0));
}

void tst_CachedPicture::drawsAgainAfterRelease()
{
    int drawn = 0;
    CachedPicture cached;
    QImage image = canvas(1.0);
    QPainter painter{&image};
    cached.draw(painter, widgetExtent, [&](QPainter & /*picture*/) { ++drawn; });
    cached.release();
    cached.draw(painter, widgetExtent, [&](QPainter & /*picture*/) { ++drawn; });
    cached.draw(painter, widgetExtent, [&](QPainter & /*picture*/) { ++drawn; });
    QCOMPARE(drawn, 2);
}

void tst_CachedPicture::drawsAgainForAnotherDevice_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QSize>("extent");
    QTest::addColumn<QPointF>("place");
    QTest::addColumn<int>("drawings");

    QTest::newRow("the same") << 1.0 << widgetExtent << QPointF{0.0, 0.0} << 1;
    QTest::newRow("moved by whole pixels") << 1.0 << widgetExtent << QPointF{9.0, 4.0} << 1;
    QTest::newRow("moved by a part of a pixel") << 1.0 << widgetExtent << QPointF{0.5, 0.0} << 2;
    QTest::newRow("finer pixels") << 1.25 << widgetExtent << QPointF{0.0, 0.0} << 2;
    QTest::newRow("wider") << 1.0 << QSize{41, 30} << QPointF{0.0, 0.0} << 2;
    QTest::newRow("taller") << 1.0 << QSize{40, 31} << QPointF{0.0, 0.0} << 2;
}

void tst_CachedPicture::drawsAgainForAnotherDevice()
{
    QFETCH(double, ratio);
    QFETCH(QSize, extent);
    QFETCH(QPointF, place);

    int drawn = 0;
    const auto draw = [&](QPainter & /*picture*/) { ++drawn; };
    CachedPicture cached;
    QImage first = canvas(1.0);
    QPainter onFirst{&first};
    cached.draw(onFirst, widgetExtent, draw);

    QImage second = canvas(ratio);
    QPainter onSecond{&second};
    onSecond.translate(place);
    cached.draw(onSecond, extent, draw);
    QTEST(drawn, "drawings");
}

void tst_CachedPicture::leavesThePainterAsItWas()
{
    CachedPicture cached;
    QImage image = canvas(1.25);
    QPainter painter{&image};
    painter.translate(7, 5);
    const QTransform before = painter.worldTransform();
    cached.draw(painter, widgetExtent, &drawing);
    QCOMPARE(painter.worldTransform(), before);
}

void tst_CachedPicture::keepsWithinTheClip()
{
    CachedPicture cached{CachedPicture::Background::Opaque};
    QImage image = canvas(1.0);
    const QRect exposed{10, 10, 5, 5};
    {
        QPainter painter{&image};
        painter.setClipRect(exposed);
        cached.draw(painter, widgetExtent, &opaqueDrawing);
    }
    QImage expected = canvas(1.0);
    {
        QPainter painter{&expected};
        painter.setClipRect(exposed);
        opaqueDrawing(painter);
    }
    QCOMPARE(image, expected);
}

QTEST_MAIN(tst_CachedPicture)

#include "tst_cachedpicture.moc"
