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
    void opaquePictureKeepsNoAlpha();
    void drawsOnceForManyFrames();
    void drawsAgainForAnotherDevice_data();
    void drawsAgainForAnotherDevice();
    void leavesThePainterAsItWas();
};

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

QTEST_MAIN(tst_CachedPicture)

#include "tst_cachedpicture.moc"
