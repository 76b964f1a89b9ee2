#include "picker/Picker.h"

#include <algorithm>
#include <cmath>

#include "formats/ColorFormats.h"
#include "formats/color/ColorName.h"
#include "library/Preferences.h"
#include "library/Sherlog.h"
#include "picker/HotKeys.h"
#include "picker/LoupeRenderer.h"
#include "picker/Sound.h"
#include "platform/Environment.h"

namespace kro {
namespace {

constexpr double kNearEdge = 200;
constexpr Seconds kRevealTimeout{2.0};
constexpr Seconds kOptionsDelay{1.0};
constexpr Seconds kPrecisionHold{0.25};
constexpr double kHintDelay = 1.0;
constexpr double kHintFade = 0.25;

bool exactly(int flags, int modifier) { return (flags & 0x1e0000) == modifier; }

}  // namespace

ScreenRect loupeFrame(ScreenPoint mouse, double interfaceScale) {
    const double half = std::round(kLoupeHalfSide * interfaceScale);
    return {std::trunc(mouse.x) - half, std::trunc(mouse.y) - half, 2 * half, 2 * half};
}

Picker::Picker(PickerServices services) : pickerImage({services.screenCapture, services.pointer, services.window, services.workspace}),
                                          services_(services) {
    pickerImage.pickerDelegate = this;
    pickerSize = Preferences::shared().pickerSize();
    pickerZoom = Preferences::shared().pickerZoom();
    if (services_.pointer) {
        const auto mouse = services_.pointer->location();
        lastX = mouse.x;
        lastY = mouse.y;
    }
    if (services_.window) {
        services_.window->onEvent = [this](const PointerEvent& event) { handle(event); };
        services_.window->onSessionLost = [this](const std::string& reason) {
            if (!isOpen) return;
            SHERLOG(reason, SherlogLevel::error);
            close(true);
        };
    }
}

std::optional<ScreenInfo> Picker::screenUnderPointer() const {
    if (!services_.screenCapture || !services_.pointer) return std::nullopt;
    return screenContaining(services_.screenCapture->screens(), services_.pointer->location());
}

void Picker::setPickerSize(int value) {
    pickerSize = std::clamp(value, kPickerSizeMin, kPickerSizeMax);
    Preferences::shared().setPickerSize(pickerSize);
    pickerImage.pickerSize = pickerSize;
    if (services_.window) services_.window->setNeedsDisplay();
}

void Picker::setPickerZoom(int value) {
    pickerZoom = std::clamp(value, kPickerZoomMin, kPickerZoomMax);
    Preferences::shared().setPickerZoom(pickerZoom);
    pickerImage.pickerZoom = pickerZoom;
    if (services_.window) services_.window->setNeedsDisplay();
}

void Picker::open(PickerSource newSource, double delay, std::function<void(bool)> completion) {
    HotKeys::shared().registerPickerKeys();
    setPickerSize(Preferences::shared().pickerSize());
    setPickerZoom(Preferences::shared().pickerZoom());
    deltaSize = pickerSize;
    deltaZoom = pickerZoom;
    source = newSource;
    pickerImage.source = newSource;
    isOpen = true;
    pickerImage.setOpen(true);
    if (services_.pointer && services_.pointer->isCursorVisible()) services_.pointer->hideCursor();
    update();

    const int generation = ++showGeneration;
    const auto milliseconds = static_cast<long>(delay * 1000);
    env().mainQueue->post(
        [this, generation, completion] {
            if (generation != showGeneration) return;
            show();
            pickerImage.startCapture([this, generation, completion] { reveal(generation, completion); });
            env().mainQueue->post([this, generation, completion] { reveal(generation, completion); }, kRevealTimeout);
        },
        Seconds(milliseconds / 1000.0));
    env().mainQueue->post(
        [this, generation] {
            if (generation == showGeneration) canShowOptions = true;
        },
        kOptionsDelay);
}

void Picker::show() {
    initialShowCompleted = false;
    alpha = 0;
    if (services_.screenCapture) services_.screenCapture->beginSession();
    if (services_.window) {
        services_.window->setAlpha(0);
        services_.window->orderFront();
    }
    // A one-point nudge of the real cursor: the first motion event places the window and the capture.
    move(0, 1);
}

void Picker::reveal(int generation, std::function<void(bool)> completion) {
    if (generation != showGeneration || initialShowCompleted || !isOpen) return;
    initialShowCompleted = true;
    alpha = 1;
    if (services_.window) {
        services_.window->setAlpha(1);
        services_.window->setNeedsDisplay();
    }
    if (completion) completion(true);
    if (!pickerTutorial.visible) {
        if (services_.pointer) pickerTutorial.center = services_.pointer->location();
        pickerTutorial.visible = true;
        showHint(hintFor(mode), kHintDelay);
    }
    if (services_.workspace) services_.workspace->refresh();
}

void Picker::close(bool resetMode, std::function<void()> completion) {
    if (pickerDelegate) HotKeys::shared().registerGlobalKeys();
    ++showGeneration;
    ++precisionTimerGeneration_;
    isOpen = false;
    pickerImage.setOpen(false);
    if (services_.pointer) {
        // Hides may have stacked up; show until the cursor is back, with a bound in case it never reports so.
        for (int attempt = 0; attempt < 16 && !services_.pointer->isCursorVisible(); ++attempt) services_.pointer->unhideCursor();
    }
    setPrecisionMode(false);
    if (resetMode) mode = PickerMode::standard;
    color.reset();
    colorName.reset();
    colors.clear();
    borderResetMode = false;
    ++pickerTutorial.generation;
    pickerTutorial.hint.reset();
    pickerTutorial.visible = false;
    canShowOptions = false;
    if (services_.workspace) services_.workspace->refresh();
    if (services_.window) services_.window->orderOut();
    if (pickerDelegate) pickerDelegate->pickerDidClose();
    if (completion) completion();
}

void Picker::update() {
    if (!isOpen || !services_.pointer) return;
    if (services_.pointer->isCursorVisible()) services_.pointer->hideCursor();
    const auto mouse = services_.pointer->location();
    if (services_.window) {
        services_.window->setFrame(loupeFrame(mouse, interfaceScale()));
        services_.window->setNeedsDisplay();
    }
}

double Picker::interfaceScale() const {
    const auto screen = screenUnderPointer();
    return screen ? screen->interfaceScale : 1;
}

void Picker::move(double dx, double dy) {
    if (!screenUnderPointer()) return;
    const auto mouse = services_.pointer->location();
    services_.pointer->moveTo({mouse.x + dx, mouse.y + dy});
    pickerImage.inBackground = false;
    update();
}

int Picker::screenPosition() const {
    const auto screen = screenUnderPointer();
    if (!screen) return 4;
    const auto mouse = services_.pointer->location();
    const auto& frame = screen->frame;
    const double nearEdge = kNearEdge * screen->interfaceScale;
    int row = 1;
    if (frame.y + frame.height - mouse.y < nearEdge) {
        row = 2;
    } else if (mouse.y - frame.y < nearEdge) {
        row = 0;
    }
    int column = 1;
    if (mouse.x - frame.x < nearEdge) {
        column = 0;
    } else if (frame.x + frame.width - mouse.x < nearEdge) {
        column = 2;
    }
    return row * 3 + column;
}

void Picker::handle(const PointerEvent& event) {
    if (!isOpen) return;
    switch (event.type) {
        case PointerEventType::leftMouseDown:
        case PointerEventType::rightMouseDown: armPrecisionTimer(); break;
        case PointerEventType::leftMouseUp:
        case PointerEventType::rightMouseUp:
            setPrecisionMode(false);
            ++precisionTimerGeneration_;
            confirm(PickerConfirmTrigger::mouse);
            break;
        case PointerEventType::mouseMoved: mouseMoved(event); break;
        case PointerEventType::leftMouseDragged:
        case PointerEventType::rightMouseDragged:
            setPrecisionMode(true);
            mouseMoved(event);
            break;
        case PointerEventType::flagsChanged: flagsChanged(event); break;
        case PointerEventType::scrollWheel: scrollWheel(event); break;
        case PointerEventType::magnify: magnify(event); break;
        case PointerEventType::smartMagnify: smartMagnify(event); break;
        default: break;
    }
}

void Picker::armPrecisionTimer() {
    const int generation = ++precisionTimerGeneration_;
    env().mainQueue->post(
        [this, generation] {
            if (generation == precisionTimerGeneration_ && isOpen) setPrecisionMode(true);
        },
        kPrecisionHold);
}

void Picker::setPrecisionMode(bool value) {
    if (value == precisionMode) return;
    precisionMode = value;
    if (value) {
        // The virtual pointer starts where the cursor is.
        if (services_.pointer) {
            const auto mouse = services_.pointer->location();
            lastX = mouse.x;
            lastY = mouse.y;
        }
        showHint(PickerHint::precision, 0);
    }
    if (services_.window) services_.window->setNeedsDisplay();
}

void Picker::mouseMoved(const PointerEvent& event) {
    if (!screenUnderPointer()) return;
    if (!precisionMode) {
        const auto mouse = services_.pointer->location();
        lastX = mouse.x;
        lastY = mouse.y;
    } else {
        // The cursor is decoupled from the mouse: it travels a tenth of the mouse's way.
        lastX += event.deltaX / 10;
        lastY += event.deltaY / 10;
        services_.pointer->moveTo({lastX, lastY});
    }
    update();
}

void Picker::flagsChanged(const PointerEvent& event) {
    const int flags = event.modifierFlags;
    if (exactly(flags, 0x100000) && canShowOptions) {
        if (pickerTutorial.hint == PickerHint::command) {
            dismissHint(kHintFade, [this] {
                if (isOpen) showModeMenu();
            });
        } else if (isOpen) {
            close(false, [this] { showModeMenu(); });
        }
    }
    if (mode == PickerMode::plugin && exactly(flags, 0x80000)) {
        destination = PickerPlugin::secondary;
        if (!pickerTutorial.hint || pickerTutorial.hint == PickerHint::precision) showHint(PickerHint::plugin, 0);
    } else {
        destination = PickerPlugin::primary;
    }
}

void Picker::scrollWheel(const PointerEvent& event) {
    const bool zoom = exactly(event.modifierFlags, 0x80000);
    switch (event.phase) {
        case GesturePhase::began:
            deltaSize = pickerSize;
            deltaZoom = pickerZoom;
            return;
        case GesturePhase::stationary:
        case GesturePhase::cancelled:
        case GesturePhase::mayBegin: return;
        case GesturePhase::ended:
            // At rest, zoom settles on a multiple of 4 and size on a multiple of 60.
            if (zoom) {
                setPickerZoom(static_cast<int>(deltaZoom * 0.25) * 4);
            } else {
                setPickerSize(static_cast<int>(deltaSize / 60) * 60);
            }
            return;
        default: break;
    }
    if (zoom) {
        deltaZoom = std::clamp(deltaZoom - event.deltaY, double(kPickerZoomMin), double(kPickerZoomMax));
        setPickerZoom(static_cast<int>(deltaZoom * 0.5) * 2);
        showHint(PickerHint::zoom, 0);
    } else {
        deltaSize = std::clamp(deltaSize + event.deltaY * -20, double(kPickerSizeMin), double(kPickerSizeMax));
        setPickerSize(static_cast<int>(deltaSize / 30) * 30);
        showHint(PickerHint::size, 0);
    }
}

void Picker::magnify(const PointerEvent& event) {
    if (event.phase == GesturePhase::began || event.phase == GesturePhase::ended) return scrollWheel(event);
    if (event.phase != GesturePhase::changed) return;
    if (exactly(event.modifierFlags, 0x80000)) {
        deltaZoom = std::clamp(deltaZoom + event.magnification * pickerZoom, double(kPickerZoomMin), double(kPickerZoomMax));
        setPickerZoom(static_cast<int>(deltaZoom * 0.5) * 2);
    } else {
        deltaSize = std::clamp(deltaSize + event.magnification * pickerSize, double(kPickerSizeMin), double(kPickerSizeMax));
        setPickerSize(static_cast<int>(deltaSize / 30) * 30);
    }
}

void Picker::smartMagnify(const PointerEvent& event) {
    if (exactly(event.modifierFlags, 0x80000)) {
        setPickerZoom(pickerZoom == kPickerZoomMax ? kPickerZoomMin : kPickerZoomMax);
    } else {
        setPickerSize(pickerSize == kPickerSizeMax ? kPickerSizeMin : kPickerSizeMax);
    }
}

void Picker::confirm(PickerConfirmTrigger trigger) {
    switch (mode) {
        case PickerMode::standard:
            if (color && pickerDelegate) pickerDelegate->pickerDidPick(ColorValue(*color), source);
            close(true);
            return;
        case PickerMode::plugin:
            if (color && services_.keySimulator && services_.keySimulator->available()) {
                if (pickerDelegate) pickerDelegate->pickerDidSend(*color, destination);
                if (isOpen && services_.pointer) services_.pointer->hideCursor();
            } else {
                close(true, [this] {
                    if (pickerDelegate) pickerDelegate->pickerNeedsAccessibility();
                });
            }
            return;
        case PickerMode::multiple:
            if (trigger == PickerConfirmTrigger::enter) {
                if (!colors.empty()) {
                    close(true, [this, picked = colors] {
                        if (pickerDelegate) pickerDelegate->pickerDidPick(picked);
                    });
                }
            } else {
                appendColor();
            }
            break;
        case PickerMode::contrast:
            if (!color) break;
            if (trigger == PickerConfirmTrigger::enter && colors.size() == 2) {
                // The pair is kept before the close empties the list.
                close(true, [this, pair = colors] {
                    if (pickerDelegate) pickerDelegate->pickerDidPickContrast(pair[0], pair[1]);
                });
            } else if (trigger != PickerConfirmTrigger::enter && colors.size() == 2) {
                colors.clear();
            } else {
                appendColor();
            }
            break;
    }
    afterConfirm();
}

void Picker::appendColor() {
    if (!color) return;
    Sound::playColor();
    colors.push_back(*color);
    while (colors.size() > kMultipleColorsMax) colors.erase(colors.begin());
    if (services_.window) services_.window->setNeedsDisplay();
}

void Picker::afterConfirm() {
    borderResetMode = mode == PickerMode::contrast && colors.size() == 2;
    if (services_.window) services_.window->setNeedsDisplay();
    if (!pickerTutorial.visible) {
        if (services_.pointer) pickerTutorial.center = services_.pointer->location();
        pickerTutorial.visible = true;
        showHint(hintFor(mode), kHintDelay);
    }
}

void Picker::showHint(PickerHint hint, double delay) {
    const int generation = ++pickerTutorial.generation;
    const int session = showGeneration;
    const auto apply = [this, hint, generation, session] {
        if (generation != pickerTutorial.generation || session != showGeneration || !isOpen) return;
        pickerTutorial.hint = hint;
        pickerTutorial.visible = true;
        if (services_.window) services_.window->setNeedsDisplay();
    };
    if (delay <= 0) {
        apply();
    } else {
        env().mainQueue->post(apply, Seconds(delay));
    }
}

void Picker::dismissHint(double seconds, std::function<void()> completion) {
    const int generation = ++pickerTutorial.generation;
    env().mainQueue->post(
        [this, generation, completion] {
            if (generation == pickerTutorial.generation) {
                pickerTutorial.hint.reset();
                pickerTutorial.visible = false;
                if (services_.window) services_.window->setNeedsDisplay();
            }
            if (completion) completion();
        },
        Seconds(seconds));
}

void Picker::showModeMenu() {
    if (!services_.menu || !services_.pointer) return;
    std::vector<PopUpMenuItem> items;
    const auto add = [&](const char* title, PickerMode itemMode, std::string icon = {}) {
        items.push_back({title,
                         [this, itemMode] {
                             mode = itemMode;
                             open(source, 0.05);
                         },
                         mode == itemMode, std::move(icon)});
    };
    add("Pick Color", PickerMode::standard);
    add("Multiple Colors", PickerMode::multiple);
    if (auto icon = pluginIcon ? pluginIcon() : std::nullopt) add("Send to software", PickerMode::plugin, std::move(*icon));
    add("Check Contrast", PickerMode::contrast);
    const auto mouse = services_.pointer->location();
    services_.menu->popUp(std::move(items), {mouse.x, mouse.y + 10}, {});
}

void Picker::pickerImageDidSample(const ColorValue& sampled, const std::shared_ptr<SmartProfileItem>& profile) {
    if (!profile || !smartProfileItem || profile->name != smartProfileItem->name) {
        smartProfileItem = profile;
        profileBadge = profile ? profile->name + " · " + text(profile->profile) : "";
    }
    if (color && *color == sampled) return;
    color = sampled;
    if (Preferences::shared().showNameOverlay()) colorName = ColorName::name(sampled.red(), sampled.green(), sampled.blue());
    if (services_.window) services_.window->setNeedsDisplay();
}

std::string Picker::overlayText() const {
    if (!color) return "";
    auto text = ColorFormats::shared().pickerString(*color);
    if (Preferences::shared().showNameOverlay() && colorName) text += "\n" + *colorName;
    return text;
}

ViewBox Picker::overlayBox() const {
    const auto screen = screenUnderPointer();
    if (!screen) return loupeOverlayBox(pickerSize, {0, 0, kLoupeViewSide, kLoupeViewSide});
    return loupeOverlayBox(pickerSize, screenInLoupeView(*screen, services_.pointer->location()));
}

}  // namespace kro
