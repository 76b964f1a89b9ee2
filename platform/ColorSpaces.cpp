// The colour spaces behind ColorValue: ICC profiles held by Little CMS, and the transforms between them.
// Making a transform is slow (a CMYK one builds lookup tables), so each pair of spaces gets one, made on first
// use and shared by every thread; running a float transform made without the pixel cache is thread-safe.
#include <lcms2.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <map>
#include <mutex>
#include <utility>

#include "platform/ColorValue.h"
#include "platform/Resources.h"

namespace kro {
namespace {

struct ProfileCloser {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using ProfileHandle = std::unique_ptr<void, ProfileCloser>;
using TransformHandle = std::shared_ptr<void>;

std::atomic<unsigned long long> nextSpaceId{1};

class IccColorSpace final : public ColorSpace {
public:
    IccColorSpace(ProfileHandle profile, ColorSpaceModel model, std::string name)
        : profile_(std::move(profile)), model_(model), name_(std::move(name)), id_(nextSpaceId++) {}
    ~IccColorSpace() override;

    ColorSpaceModel model() const override { return model_; }
    const std::string& name() const override { return name_; }
    int componentCount() const override {
        switch (model_) {
            case ColorSpaceModel::cmyk: return 4;
            case ColorSpaceModel::gray: return 1;
            case ColorSpaceModel::rgb:
            case ColorSpaceModel::lab: return 3;
        }
        return 3;
    }

    cmsHPROFILE profile() const { return profile_.get(); }
    unsigned long long id() const { return id_; }

private:
    ProfileHandle profile_;
    ColorSpaceModel model_;
    std::string name_;
    unsigned long long id_;
};

// Little CMS float formats and how its numbers relate to ours: CMYK is 0…100 there and 0…1 here.
cmsUInt32Number pixelFormat(ColorSpaceModel model) {
    switch (model) {
        case ColorSpaceModel::rgb: return TYPE_RGB_DBL;
        case ColorSpaceModel::cmyk: return TYPE_CMYK_DBL;
        case ColorSpaceModel::gray: return TYPE_GRAY_DBL;
        case ColorSpaceModel::lab: return TYPE_Lab_DBL;
    }
    return TYPE_RGB_DBL;
}

double lcmsScale(ColorSpaceModel model) { return model == ColorSpaceModel::cmyk ? 100.0 : 1.0; }

void clampToRange(ColorSpaceModel model, std::vector<double>& components) {
    for (size_t i = 0; i < components.size(); ++i) {
        double& value = components[i];
        if (std::isnan(value)) value = 0;
        if (model == ColorSpaceModel::lab) {
            value = i == 0 ? std::clamp(value, 0.0, 100.0) : std::clamp(value, -128.0, 127.0);
        } else {
            value = std::clamp(value, 0.0, 1.0);
        }
    }
}

// One transform per ordered pair of live spaces. A space removes its own entries when it goes, so profiles
// that come and go (a display's) leave nothing behind. Never destroyed: spaces held in statics may outlive
// any other static.
class TransformCache {
public:
    static TransformCache& shared() {
        static auto* cache = new TransformCache;
        return *cache;
    }

    TransformHandle transform(const IccColorSpace& from, const IccColorSpace& to) {
        std::lock_guard lock(mutex_);
        auto key = std::make_pair(from.id(), to.id());
        if (auto found = transforms_.find(key); found != transforms_.end()) return found->second;
        TransformHandle made;
        if (from.profile() && to.profile()) {
            // Made under the lock: profiles read their tags lazily and are not to be read by two threads at once.
            cmsHTRANSFORM handle = cmsCreateTransform(from.profile(), pixelFormat(from.model()), to.profile(),
                                                      pixelFormat(to.model()), INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE);
            if (handle) made = TransformHandle(handle, [](void* t) { cmsDeleteTransform(t); });
        }
        transforms_.emplace(key, made);  // a failure is remembered too: it would fail again
        return made;
    }

    void forget(unsigned long long spaceId) {
        std::lock_guard lock(mutex_);
        std::erase_if(transforms_, [&](const auto& entry) {
            return entry.first.first == spaceId || entry.first.second == spaceId;
        });
    }

private:
    std::mutex mutex_;
    std::map<std::pair<unsigned long long, unsigned long long>, TransformHandle> transforms_;
};

IccColorSpace::~IccColorSpace() { TransformCache::shared().forget(id_); }

std::shared_ptr<const ColorSpace> makeSpace(cmsHPROFILE profile, ColorSpaceModel model, std::string name) {
    return std::make_shared<IccColorSpace>(ProfileHandle(profile), model, std::move(name));
}

const cmsCIExyY kD65 = {0.3127, 0.3290, 1.0};

std::shared_ptr<const ColorSpace> makeRGBSpace(const cmsCIExyYTRIPLE& primaries, cmsToneCurve* curve,
                                               std::string name) {
    cmsToneCurve* curves[3] = {curve, curve, curve};
    cmsHPROFILE profile = cmsCreateRGBProfile(&kD65, &primaries, curves);
    cmsFreeToneCurve(curve);
    return makeSpace(profile, ColorSpaceModel::rgb, std::move(name));
}

// The sRGB transfer function: a linear toe, then gamma 2.4.
cmsToneCurve* sRGBCurve() {
    const cmsFloat64Number parameters[5] = {2.4, 1.0 / 1.055, 0.055 / 1.055, 1.0 / 12.92, 0.04045};
    return cmsBuildParametricToneCurve(nullptr, 4, parameters);
}

std::shared_ptr<const ColorSpace> makeGraySpace(double gamma, std::string name) {
    cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
    cmsHPROFILE profile = cmsCreateGrayProfile(&kD65, curve);
    cmsFreeToneCurve(curve);
    return makeSpace(profile, ColorSpaceModel::gray, std::move(name));
}

std::optional<ColorSpaceModel> modelOf(cmsHPROFILE profile) {
    switch (cmsGetColorSpace(profile)) {
        case cmsSigRgbData: return ColorSpaceModel::rgb;
        case cmsSigCmykData: return ColorSpaceModel::cmyk;
        case cmsSigGrayData: return ColorSpaceModel::gray;
        case cmsSigLabData: return ColorSpaceModel::lab;
        default: return std::nullopt;
    }
}

}  // namespace

std::shared_ptr<const ColorSpace> ColorSpace::sRGB() {
    static const auto space = makeSpace(cmsCreate_sRGBProfile(), ColorSpaceModel::rgb, "sRGB IEC61966-2.1");
    return space;
}

std::shared_ptr<const ColorSpace> ColorSpace::displayP3() {
    static const auto space = makeRGBSpace({{0.680, 0.320, 1.0}, {0.265, 0.690, 1.0}, {0.150, 0.060, 1.0}},
                                           sRGBCurve(), "Display P3");
    return space;
}

std::shared_ptr<const ColorSpace> ColorSpace::adobeRGB1998() {
    static const auto space = makeRGBSpace({{0.64, 0.33, 1.0}, {0.21, 0.71, 1.0}, {0.15, 0.06, 1.0}},
                                           cmsBuildGamma(nullptr, 563.0 / 256.0), "Adobe RGB (1998)");
    return space;
}

std::shared_ptr<const ColorSpace> ColorSpace::genericRGB() {
    static const auto space = makeRGBSpace({{0.625, 0.340, 1.0}, {0.280, 0.595, 1.0}, {0.155, 0.070, 1.0}},
                                           cmsBuildGamma(nullptr, 1.8), "Generic RGB");
    return space;
}

std::shared_ptr<const ColorSpace> ColorSpace::genericCMYK() {
    static const auto space = [] {
        auto bytes = resource("GenericCMYK.icc");
        // Without the shipped profile the space still exists, but nothing converts to or from it.
        cmsHPROFILE profile = bytes ? cmsOpenProfileFromMem(bytes->data(), static_cast<cmsUInt32Number>(bytes->size()))
                                    : nullptr;
        return makeSpace(profile, ColorSpaceModel::cmyk, "Generic CMYK");
    }();
    return space;
}

std::shared_ptr<const ColorSpace> ColorSpace::genericGray() {
    static const auto space = makeGraySpace(2.2, "Generic Gray");
    return space;
}

std::shared_ptr<const ColorSpace> ColorSpace::linearGray() {
    static const auto space = makeGraySpace(1.0, "Linear Gray");
    return space;
}

std::shared_ptr<const ColorSpace> ColorSpace::labD50() {
    static const auto space = makeSpace(cmsCreateLab4Profile(nullptr), ColorSpaceModel::lab, "Lab D50");
    return space;
}

std::shared_ptr<const ColorSpace> ColorSpace::fromICCProfile(std::string_view bytes, const std::string& name) {
    if (bytes.empty()) return nullptr;
    cmsHPROFILE profile = cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size()));
    if (!profile) return nullptr;
    auto model = modelOf(profile);
    auto deviceClass = cmsGetDeviceClass(profile);
    if (!model || deviceClass == cmsSigLinkClass || deviceClass == cmsSigAbstractClass ||
        deviceClass == cmsSigNamedColorClass) {
        cmsCloseProfile(profile);
        return nullptr;
    }
    auto space = makeSpace(profile, *model, name);
    // A profile that opens may still lack the tables to convert from it; find out now, not at the first pick.
    if (!detail::convertComponents(*space, *labD50(), std::vector<double>(space->componentCount(), 0.0))) {
        return nullptr;
    }
    return space;
}

namespace detail {

std::optional<std::vector<double>> convertComponents(const ColorSpace& from, const ColorSpace& to,
                                                     const std::vector<double>& components) {
    auto* source = dynamic_cast<const IccColorSpace*>(&from);
    auto* target = dynamic_cast<const IccColorSpace*>(&to);
    if (!source || !target) return std::nullopt;
    auto transform = TransformCache::shared().transform(*source, *target);
    if (!transform) return std::nullopt;

    std::vector<double> input(static_cast<size_t>(from.componentCount()), 0.0);
    double inputScale = lcmsScale(from.model());
    for (size_t i = 0; i < input.size() && i < components.size(); ++i) {
        // Non-finite numbers would index the profile's tables out of range.
        input[i] = std::isfinite(components[i]) ? components[i] * inputScale : 0.0;
    }
    std::vector<double> output(static_cast<size_t>(to.componentCount()), 0.0);
    cmsDoTransform(transform.get(), input.data(), output.data(), 1);
    double outputScale = lcmsScale(to.model());
    for (double& value : output) value /= outputScale;
    clampToRange(to.model(), output);
    return output;
}

}  // namespace detail
}  // namespace kro
