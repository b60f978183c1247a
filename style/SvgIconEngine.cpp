// SPDX-License-Identifier: MIT
#include "style/SvgIconEngine.h"

#include "style/VelmoraPalette.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <memory>

using namespace Qt::StringLiterals;

// The resources of a static library are registered by hand, with a macro that must be used outside
// namespaces.
static void registerResources()
{
    Q_INIT_RESOURCE(style);
}

namespace
{

constexpr double disabledOpacity = 0.55;

class SvgIconEngine : public QIconEngine
{
public:
    SvgIconEngine(std::shared_ptr<QSvgRenderer> renderer, const std::optional<QColor> &tint)
        : m_renderer(std::move(renderer)), m_tint(tint)
    {
    }

    QIconEngine *clone() const override { return new SvgIconEngine(*this); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const double ratio = painter->device()->devicePixelRatioF();
        QPixmap picture = pixmap(rect.size() * ratio, mode, state);
        picture.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect, picture);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        if (picture.isNull())
            return picture;

        QPainter painter(&picture);
        QRectF target({}, m_renderer->defaultSize().scaled(size, Qt::KeepAspectRatio));
        target.moveCenter(QRectF(picture.rect()).center());
        painter.setOpacity(mode == QIcon::Disabled ? disabledOpacity : 1);
        m_renderer->render(&painter, target);

        const bool grey = mode == QIcon::Disabled;
        if (grey || m_tint) {
            painter.setOpacity(1);
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(picture.rect(), grey ? VelmoraPalette::tertiaryText() : *m_tint);
        }
        return picture;
    }

private:
    std::shared_ptr<QSvgRenderer> m_renderer;
    std::optional<QColor> m_tint;
};

} // namespace

QIcon svgIcon(const QString &name, const std::optional<QColor> &tint)
{
    registerResources();
    const QString path = u":/velmora/%1.svg"_s.arg(name);
    if (!QFile::exists(path))
        return {};
    const auto renderer = std::make_shared<QSvgRenderer>(path);
    return renderer->isValid() ? QIcon(new SvgIconEngine(renderer, tint)) : QIcon();
}
