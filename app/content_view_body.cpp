// ContentView's layout, from top to bottom.
#include "app/content_view.h"

#include <utility>

#include "app/hardware_row.h"
#include "tracking/app_tracker.h"

using namespace platform;

namespace {

constexpr int cornerRadius = 8;
constexpr double tint = 0.1;  // Opacity of the coloured backgrounds behind text.
constexpr int maximumListHeight = 200;
constexpr const char* urlCaption = "Website URL:";
constexpr const char* listCaption = "Detected Hardware:";

View header() {
    return vstack(Alignment::center, 8,
                  {
                      View(Text{.text = "🔍 Hardware Detector", .style = TextStyle::title2, .weight = Weight::bold}),
                      View(Text{.text = "Detect your PC hardware for Velmora",
                                .style = TextStyle::subheadline,
                                .color = Color::secondary}),
                  })
        .padding(Edges::top, 20);
}

struct BannerLook {
    SymbolName symbol;
    Color color;
};

BannerLook lookOf(ContentView::StatusType type) {
    if (type == ContentView::StatusType::success) return {SymbolName::checkmarkCircleFill, Color::green};
    if (type == ContentView::StatusType::error) return {SymbolName::xmarkCircleFill, Color::red};
    return {SymbolName::infoCircleFill, Color::blue};
}

View statusBanner(const std::string& message, ContentView::StatusType type) {
    const BannerLook look = lookOf(type);
    return hstack({
                      View(Symbol{look.symbol, look.color}),
                      View(Text{.text = message, .style = TextStyle::subheadline, .color = Color::primary}),
                  })
        .padding()
        .stretch()
        .background(look.color, tint, cornerRadius)
        .announced();
}

View addressInput(const Cell<std::string>& websiteUrl) {
    return vstack(Alignment::leading, 8,
                  {
                      View(Text{.text = urlCaption, .style = TextStyle::headline}),
                      View(TextField{.text = websiteUrl.get(),
                                     .placeholder = "https://your-website.example",
                                     .accessibleName = urlCaption,
                                     .onChange = [websiteUrl](const std::string& text) { websiteUrl.set(text); }}),
                  })
        .padding(Edges::horizontal);
}

// The label of both buttons: the text, with a spinner before it while busy, white on the button's colour.
View actionLabel(bool isBusy, const char* busyText, const char* idleText, Color fill) {
    return hstack(
               {
                   optionally(isBusy, [] { return View(ProgressIndicator{.scale = 0.8}).padding(Edges::trailing, 8); }),
                   View(Text{.text = isBusy ? busyText : idleText}),
               })
        .stretch()
        .padding()
        .background(fill, 1, cornerRadius)
        .foreground(Color::white);
}

View detectButton(const ContentView& view) {
    const bool isDetecting = view.isDetecting.get();
    return View(Button{[view] { view.detectHardware(); },
                       {actionLabel(isDetecting, "Detecting...", "Detect Hardware", Color::blue)}})
        .disabled(isDetecting)
        .padding(Edges::horizontal);
}

View sendButton(const ContentView& view) {
    const bool isSending = view.isSending.get();
    return View(Button{[view] { view.sendToWebsite(); },
                       {actionLabel(isSending, "Sending...", "Send to Website", Color::green)}})
        .disabled(isSending || view.websiteUrl.get().empty())
        .padding(Edges::horizontal);
}

// On purpose, only the graphics card's "8GB" has no blank.
std::vector<HardwareRow> rowsOf(const HardwareInfo& hardware) {
    return {
        {"OS", hardware.os},
        {"Processor", hardware.processor},
        {"Graphics Card", hardware.graphicsCard + " " + std::to_string(hardware.gpuMemory) + "GB"},
        {"RAM", std::to_string(hardware.ramGB) + " GB " + hardware.ramType},
        {"Storage", std::to_string(hardware.storageGB) + " GB " + hardware.storageType},
    };
}

View hardwareList(const HardwareInfo& hardware) {
    std::vector<View> lines = {View(Text{.text = listCaption, .style = TextStyle::headline})};
    for (const HardwareRow& row : rowsOf(hardware)) lines.push_back(row.body());
    return View(ScrollArea{maximumListHeight,
                           listCaption,
                           {vstack(Alignment::leading, 12, std::move(lines))
                                .padding()
                                .stretch(Alignment::leading)
                                .background(Color::gray, tint, cornerRadius)}})
        .padding(Edges::horizontal);
}

}  // namespace

View ContentView::body() const {
    const std::optional<HardwareInfo> hardware = detectedHardware.get();
    const std::string message = statusMessage.get();
    return vstack(Alignment::center, 20,
                  {
                      header(),
                      optionally(!message.empty(), [&] { return statusBanner(message, statusType.get()); }),
                      addressInput(websiteUrl),
                      detectButton(*this),
                      optionally(hardware.has_value(), [&] { return hardwareList(*hardware); }),
                      optionally(hardware.has_value(), [&] { return sendButton(*this); }),
                      spacer(),
                  })
        .padding()
        .onAppear([view = *this] { AppTracker::trackUsage(view.websiteUrl.get()); });
}
