#include "image/embedded_profile.h"

#include <exiv2/exiv2.hpp>
#include <exiv2/webpimage.hpp>

#include <climits>

namespace {

#if EXIV2_TEST_VERSION(0, 28, 0)
using IoPtr = Exiv2::BasicIo::UniquePtr;
#else
// Exiv2 0.27 hands its objects over in std::auto_ptr, which clang flags as deprecated.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
using IoPtr = Exiv2::BasicIo::AutoPtr;
#endif

bool isSupported(Exiv2::BasicIo& io) {
    try {
        const int type = Exiv2::ImageFactory::getType(io);
        return type == Exiv2::ImageType::jpeg || type == Exiv2::ImageType::png ||
               type == Exiv2::ImageType::tiff || type == Exiv2::ImageType::webp;
    } catch (...) {
        return false; // then it is no image of ours, and the profile loader has its say
    }
}

icEmbeddedProfile readProfile(IoPtr io) {
#if EXIV2_TEST_VERSION(0, 28, 0)
    const auto image = Exiv2::ImageFactory::open(std::move(io));
    image->readMetadata();
    const Exiv2::DataBuf& profile = image->iccProfile();
    const Exiv2::byte* data = profile.c_data();
    const std::size_t size = profile.size();
#else
    const auto image = Exiv2::ImageFactory::open(io);
    image->readMetadata();
    const Exiv2::DataBuf& profile = *image->iccProfile();
    const Exiv2::byte* data = profile.pData_;
    const std::size_t size = profile.size_ > 0 ? static_cast<std::size_t>(profile.size_) : 0;
#endif
    if (!image->iccProfileDefined() || size == 0)
        return {icEmbeddedStatus::noProfile, {}};
    return {icEmbeddedStatus::found, std::vector<std::uint8_t>(data, data + size)};
}

// Exiv2 throws on damaged files (and std::bad_alloc on absurd sizes): the boundary catches all.
template <class MakeIo> icEmbeddedProfile readFrom(MakeIo makeIo) noexcept {
    // Exiv2 reports what it dislikes on standard error; our callers say it themselves.
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    try {
        IoPtr io = makeIo();
        if (!isSupported(*io))
            return {};
        return readProfile(std::move(io));
    } catch (...) {
        return {icEmbeddedStatus::unreadable, {}};
    }
}

} // namespace

icEmbeddedProfile readEmbeddedProfile(const std::string& path) {
    // Always a plain file: Exiv2's own path parsing would take "-" for standard input and
    // fetch http:// names.
    return readFrom([&] { return IoPtr(new Exiv2::FileIo(path)); });
}

icEmbeddedProfile readEmbeddedProfile(std::span<const std::uint8_t> image) {
    if (image.size() > static_cast<std::size_t>(LONG_MAX))
        return {icEmbeddedStatus::unreadable, {}};
    return readFrom(
        [&] { return IoPtr(new Exiv2::MemIo(image.data(), static_cast<long>(image.size()))); });
}
