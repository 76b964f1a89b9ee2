// Paint Shop Pro gradients (.PspGradient, .jgd), read only. They are Photoshop's version 3 gradient
// files byte for byte, so the version 3 reader does the work; a version 5 file is Photoshop's own.
#include "exchange/BytesReader.h"
#include "exchange/gradients/GRDVersion3.h"
#include "exchange/gradients/GradientCoders.h"

namespace PAL {

namespace {

class PaintShopProGradientCoder final : public GradientsCoder {
public:
    PaintShopProGradientCoder() : GradientsCoder(GradientsFormat::paintShopPro) {}
    using GradientsCoder::decode;

    Gradients decode(BytesParser::BytesReader& reader) const override {
        const auto data = reader.readAll();
        Gradients gradients;
        gradients.format = GradientsFormat::paintShopPro;
        gradients.gradients = grdVersion3Gradients(std::string_view(reinterpret_cast<const char*>(data.data()), data.size()));
        return gradients;
    }
};

}  // namespace

std::unique_ptr<GradientsCoder> makePaintShopProGradientCoder() { return std::make_unique<PaintShopProGradientCoder>(); }

}  // namespace PAL
