// The life cycle a host drives and the surface semantics every control draws with.
#include <gtest/gtest.h>

#include "framework/control.h"
#include "framework/errors.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

class TracingControl : public Control {
 public:
  TracingControl(Host& h, Platform& p, std::vector<std::string>& trace) : Control(h, p), trace_(trace) {
    trace_.push_back("Initialize");
  }
  void InitProperties() override { trace_.push_back("InitProperties"); }
  void ReadProperties(const PropertyBag& bag) override {
    trace_.push_back("ReadProperties");
    IgnoreErrors([&] { value_ = bag.ReadProperty("Value", std::int16_t{5}).ToInteger(); });
    IgnoreErrors([&] { caption_ = bag.ReadProperty("Caption", "none").ToString(); });
  }
  void WriteProperties(PropertyBag& bag) override {
    trace_.push_back("WriteProperties");
    bag.WriteProperty("Value", value_, std::int16_t{5});
    bag.WriteProperty("Caption", caption_, "none");
  }
  void Resize() override { trace_.push_back("Resize " + std::to_string(UserControl().Width()) + "x" +
                                            std::to_string(UserControl().Height())); }
  void Paint() override { trace_.push_back("Paint"); }

  std::int16_t value_ = 0;
  std::string caption_;

 private:
  std::vector<std::string>& trace_;
};

}  // namespace

TEST(ControlModel, NewInstanceOrder) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  std::vector<std::string> trace;
  TracingControl c(host, p, trace);
  host.PlaceNew(c, 40, 20);
  EXPECT_EQ(trace, (std::vector<std::string>{"Initialize", "InitProperties", "Resize 40x20", "Paint"}));
}

TEST(ControlModel, LoadedInstanceOrderAndFailedReadKeepsTheField) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  std::vector<std::string> trace;
  TracingControl c(host, p, trace);
  c.value_ = 9;
  PropertyBag bag = PropertyBag::FromText("Value = \"not a number\"\nCaption = \"Hi\"\n");
  host.Load(c, bag, 30, 10);
  EXPECT_EQ(trace, (std::vector<std::string>{"Initialize", "ReadProperties", "Resize 30x10", "Paint"}));
  EXPECT_EQ(c.value_, 9);  // that one read failed, the next one still ran
  EXPECT_EQ(c.caption_, "Hi");
  PropertyBag out;
  c.WriteProperties(out);
  EXPECT_EQ(out.ToText(), "Value = 9\nCaption = \"Hi\"\n");
}

TEST(ControlModel, ExtentInTwipsAndSizeRequests) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  std::vector<std::string> trace;
  TracingControl c(host, p, trace);
  host.PlaceNew(c, 40, 20);
  EXPECT_EQ(c.Width(), 600);
  EXPECT_EQ(c.Height(), 300);
  trace.clear();
  c.SetHeight(7 * 15);
  EXPECT_EQ(host.size_requests.back(), (std::pair<std::int32_t, std::int32_t>{600, 105}));
  EXPECT_EQ(trace, (std::vector<std::string>{"Resize 40x7"}));
}

TEST(Surface, ClsFillsWithBackColourAndResetsThePosition) {
  HeadlessPlatform p;
  Surface s(p, 0, 4, 3);
  s.SetCurrentX(2);
  s.SetCurrentY(1);
  s.SetBackColor(0x80000005);
  EXPECT_EQ(s.CurrentX(), 0);
  Image img = s.Snapshot();
  for (ColorRef c : img.pixels) EXPECT_EQ(c, Rgb(255, 255, 255));
}

TEST(Surface, GrowingKeepsTheImageAndShowsTheBackColourInTheNewArea) {
  HeadlessPlatform p;
  Surface s(p, 0, 2, 2);
  s.SetBackColor(0x8000000F);  // button face, 192 grey
  s.PSet(1, 1, 0x000000FF);
  s.Move(0, 0, 4, 3);
  Image img = s.Snapshot();
  ASSERT_EQ(img.width, 4);
  ASSERT_EQ(img.height, 3);
  const ColorRef face = Rgb(192, 192, 192), red = Rgb(255, 0, 0);
  const std::vector<ColorRef> want = {face, face, face, face,  //
                                      face, red,  face, face,  //
                                      face, face, face, face};
  EXPECT_EQ(img.pixels, want);
  // Shrinking draws nothing.
  s.PSet(0, 0, 0x0000FF00);
  s.Move(0, 0, 1, 1);
  EXPECT_EQ(s.Snapshot().pixels, (std::vector<ColorRef>{Rgb(0, 255, 0)}));
}

TEST(Surface, LineBoxIncludesBothCornersAndPlainLineNotTheLastPoint) {
  HeadlessPlatform p;
  Surface s(p, 0, 8, 6);
  s.SetBackColor(0x00FFFFFF);
  s.Line(1, 1, 4, 3, 0x0000FF, true, true);
  s.Line(0, 5, 5, 5, 0x00FF00);
  Image img = s.Snapshot();
  EXPECT_EQ(img.At(1, 1), 0x0000FFu);
  EXPECT_EQ(img.At(4, 3), 0x0000FFu);
  EXPECT_EQ(img.At(5, 3), 0xFFFFFFu);
  EXPECT_EQ(img.At(4, 4), 0xFFFFFFu);
  EXPECT_EQ(img.At(0, 5), 0x00FF00u);
  EXPECT_EQ(img.At(4, 5), 0x00FF00u);
  EXPECT_EQ(img.At(5, 5), 0xFFFFFFu);
  EXPECT_EQ(s.CurrentX(), 5);
}

TEST(Surface, FloatCornersRoundHalfToEven) {
  HeadlessPlatform p;
  Surface s(p, 0, 8, 2);
  s.SetBackColor(0xFFFFFF);
  s.Line(2.5f, 0, 4.5f, 1, 0x000000, true, true);  // 2.5 -> 2, 4.5 -> 4
  Image img = s.Snapshot();
  EXPECT_EQ(img.At(1, 0), 0xFFFFFFu);
  EXPECT_EQ(img.At(2, 0), 0u);
  EXPECT_EQ(img.At(4, 1), 0u);
  EXPECT_EQ(img.At(5, 1), 0xFFFFFFu);
}

TEST(Surface, MaskPenKeepsBlackAndTintsWhite) {
  HeadlessPlatform p;
  Surface s(p, 0, 2, 1);
  s.SetBackColor(0xFFFFFF);
  s.PSet(1, 0, 0x000000);
  s.SetDrawMode(R2_MASKPEN);
  s.Line(0, 0, 1, 0, Rgb(192, 192, 192), true, true);
  Image img = s.Snapshot();
  EXPECT_EQ(img.At(0, 0), Rgb(192, 192, 192));
  EXPECT_EQ(img.At(1, 0), 0u);
}

TEST(Surface, PrintAdvancesOneLineAndMeasuresWithTheMetricsFont) {
  HeadlessPlatform p;
  Surface s(p, 0, 60, 30);
  s.SetBackColor(0xFFFFFF);
  s.SetForeColor(0x000000);
  EXPECT_EQ(s.TextWidth("Hello"), 25);  // 5 characters of 5 pixels at 8.25 points
  EXPECT_EQ(s.TextHeight("Hello"), 13);
  s.SetCurrentX(3);
  s.SetCurrentY(2);
  s.Print("AB");
  EXPECT_EQ(s.CurrentX(), 0);
  EXPECT_EQ(s.CurrentY(), 15);
  Image img = s.Snapshot();
  EXPECT_EQ(img.At(3 + 1, 2 + 3), 0u);    // first glyph block
  EXPECT_EQ(img.At(3, 2 + 3), 0xFFFFFFu);  // its left gap
  EXPECT_EQ(img.At(8 + 3, 2 + 9), 0u);    // second glyph block
  EXPECT_EQ(img.At(3 + 1, 2 + 10), 0xFFFFFFu);
}

TEST(Surface, FontIsHeldByReference) {
  HeadlessPlatform p;
  Surface s(p, 0, 10, 10);
  auto f = std::make_shared<Font>("Arial", 12);
  s.SetFont(f);
  EXPECT_EQ(s.Font(), f);
  s.SetFontUnderline(true);
  EXPECT_TRUE(f->Underline());
  EXPECT_EQ(s.TextWidth("x"), 7);  // 16 pixels high: (80 + 5) / 11
}

TEST(Picture, LoadsBitmapsAndReportsHimetric) {
  Image img(16, 8, Rgb(1, 2, 3));
  img.At(15, 7) = Rgb(200, 100, 50);
  auto bytes = EncodeBmp(img);
  PictureRef pic = Picture::FromBytes(bytes);
  ASSERT_TRUE(pic);
  EXPECT_EQ(pic->Type(), PictureType::Bitmap);
  EXPECT_EQ(pic->Pixels(), img);
  EXPECT_EQ(pic->Width(), 423);  // 16 pixels at 96 per inch
  EXPECT_EQ(pic->Height(), 212);
  EXPECT_EQ(HimetricToPixels(pic->Width()), 16);
  EXPECT_EQ(HimetricToPixels(pic->Height()), 8);
  EXPECT_FALSE(Picture::FromBytes({'n', 'o', 't'}));
  EXPECT_FALSE(Picture::Load("/nonexistent/file.bmp"));
}

TEST(Picture, LoadsIconsWithTheirMask) {
  // A 2 x 2 icon, 24 bits, the right column transparent.
  std::vector<std::uint8_t> ico = {0, 0, 1, 0, 1, 0,  // header
                                   2, 2, 0, 0, 1, 0, 24, 0, 0, 0, 0, 0, 22, 0, 0, 0};
  std::uint32_t size = 40 + 2 * 8 + 2 * 4;
  ico[14] = static_cast<std::uint8_t>(size);
  std::vector<std::uint8_t> dib = {40, 0, 0, 0, 2, 0, 0, 0, 4, 0, 0, 0, 1, 0, 24, 0};
  dib.resize(40, 0);
  // colour rows bottom-up, 2 pixels x 3 bytes + 2 padding
  std::vector<std::uint8_t> rows = {0, 0, 255, 0, 255, 0, 0, 0,    // bottom: red, green
                                    255, 0, 0, 255, 255, 255, 0, 0};  // top: blue, white
  std::vector<std::uint8_t> mask = {0x40, 0, 0, 0, 0x40, 0, 0, 0};
  ico.insert(ico.end(), dib.begin(), dib.end());
  ico.insert(ico.end(), rows.begin(), rows.end());
  ico.insert(ico.end(), mask.begin(), mask.end());
  PictureRef pic = Picture::FromBytes(ico);
  ASSERT_TRUE(pic);
  EXPECT_EQ(pic->Type(), PictureType::Icon);
  EXPECT_EQ(pic->Pixels().At(0, 0), Rgb(0, 0, 255));
  EXPECT_EQ(pic->Pixels().At(0, 1), Rgb(255, 0, 0));
  EXPECT_EQ(pic->Pixels().transparent, (std::vector<bool>{false, true, false, true}));
}
