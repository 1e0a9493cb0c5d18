// What the views read from a view model: settings a stranger's preferences may have broken
// come out drawable, the layers come out as slides of the right kind, and the model may go first.
#include "DisplayEngine/slideshow/SlideshowTestHost.h"

#include "views/SlideshowViewState.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace sorvane {
namespace {

using namespace sorvane::test;

TEST(SlideshowViewState, SettingsComeOutDrawable)
{
    const struct {
        std::function<void(SlideshowSettings &)> change;
        const char *property;
        QVariant expected;
    } rows[] = {
        {[](SlideshowSettings &s) { s.imageScaling = ImageScalingMode::fillScreen; }, "scaling", "fill_screen"},
        {[](SlideshowSettings &s) { s.imageScaling = ImageScalingMode::actualSize; }, "scaling", "actual_size"},
        {[](SlideshowSettings &s) { s.backgroundColor = "#336699"; }, "backgroundColor", QColor("#336699")},
        {[](SlideshowSettings &s) { s.backgroundColor = "no such colour"; }, "backgroundColor", QColor(Qt::black)},
        {[](SlideshowSettings &s) { s.controlSize = "large"; }, "controlSize", "large"},
        {[](SlideshowSettings &s) { s.controlSize = "huge"; }, "controlSize", "medium"},
        {[](SlideshowSettings &s) { s.controlOpacity = std::nan(""); }, "controlOpacity", 0.4},
        {[](SlideshowSettings &s) { s.controlOpacity = 3; }, "controlOpacity", 1.0},
        {[](SlideshowSettings &s) { s.controlOpacity = -1; }, "controlOpacity", 0.0},
        {[](SlideshowSettings &s) { s.fileDisplayFormat = FileDisplayFormat::fullPath; }, "fileNameLine",
            "/show/img1.jpg"},
    };
    for (const auto &row : rows) {
        SlideshowRig rig;
        SlideshowSettings settings;
        row.change(settings);
        auto model = rig.make(numberedItems(2), settings);
        model->start();
        SlideshowViewState state;
        state.setViewModel(model.get());
        EXPECT_EQ(state.property(row.property), row.expected) << row.property;
    }
}

TEST(SlideshowViewState, LayersAreSlidesOfTheirKindAndFollowTheModel)
{
    QList<ImageItem> items = numberedItems(3);
    items[1].setAnimated(true);
    items[2].setMediaType(MediaType::video);
    SlideshowRig rig;
    SlideshowSettings settings;
    settings.transitionStyle = TransitionStyle::none;
    auto model = rig.make(items, settings);
    model->start();
    SlideshowViewState state;
    state.setViewModel(model.get());
    for (int i = 0; i < 3; ++i) {
        const QVariantMap slide
            = (model->isPrimaryLayerActive() ? state.primarySlide() : state.secondarySlide()).toMap();
        EXPECT_EQ(slide.value("source").toUrl(), items[i].url()) << i;
        EXPECT_EQ(slide.value("id").toString(), items[i].id().toString(QUuid::WithoutBraces)) << i;
        EXPECT_EQ(slide.value("isAnimated").toBool(), i == 1) << i;
        EXPECT_EQ(slide.value("isVideo").toBool(), i == 2) << i;
        model->next();
    }

    model->setImageFilter(ImageFilter::sepia);
    EXPECT_EQ(state.filter(), "sepia");
    model.reset();
    EXPECT_EQ(state.viewModel(), nullptr);
    EXPECT_FALSE(state.primarySlide().isValid());
    EXPECT_EQ(state.fileNameLine(), "");
}

} // namespace
} // namespace sorvane
