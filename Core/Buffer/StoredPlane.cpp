// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/StoredPlane.h"

#include "Core/Buffer/ElementTypes.h"
#include "Core/Buffer/LazyPlane.h"
#include "Core/Common/Array.h"

#include <atomic>
#include <cstring>
#include <mutex>

namespace BufferApi
{

namespace
{

/// What the store does with its planes beyond their interface.
class PlaneStorage
{
public:
    PlaneStorage(const PlaneStorage&) = delete;
    PlaneStorage& operator=(const PlaneStorage&) = delete;

    virtual void adopt(void* array) noexcept = 0;
    /// False from the second call on.
    [[nodiscard]] bool claim() noexcept { return !std::exchange(m_isClaimed, true); }
    /// Null unless the pixels are still to be read.
    [[nodiscard]] virtual std::shared_ptr<const PlaneSource> source() const = 0;

protected:
    PlaneStorage() = default;
    ~PlaneStorage() = default;

private:
    bool m_isClaimed = false;
};

template <typename T>
using PlaneInterface = std::conditional_t<std::is_same_v<T, RgbQuad>, I_PlaneRGB, I_Plane<T>>;

template <typename T>
class StoredPlane final : public PlaneInterface<T>, public PlaneStorage
{
public:
    StoredPlane(unsigned int width, unsigned int height, T* data, std::shared_ptr<const PlaneSource> source)
        : m_width(width), m_height(height), m_data(data), m_source(std::move(source))
    {
    }
    ~StoredPlane() override { delete[] m_data.load(std::memory_order_relaxed); }

    [[nodiscard]] void* GetData() const override
    {
        if (T* data = m_data.load(std::memory_order_acquire)) {
            return data;
        }
        const std::lock_guard lock(m_mutex);
        return loadLocked();
    }

    [[nodiscard]] void* ReleaseData() override
    {
        const std::lock_guard lock(m_mutex);
        loadLocked();
        return m_data.exchange(nullptr, std::memory_order_acq_rel);
    }

    [[nodiscard]] unsigned int GetWidth() const override { return m_width; }
    [[nodiscard]] unsigned int GetHeight() const override { return m_height; }

    void adopt(void* array) noexcept override { m_data.store(static_cast<T*>(array)); }

    [[nodiscard]] std::shared_ptr<const PlaneSource> source() const override
    {
        const std::lock_guard lock(m_mutex);
        return m_source;
    }

private:
    T* loadLocked() const
    {
        if (m_source) {
            const unsigned long long count = 1ULL * m_width * m_height;
            std::unique_ptr<T[]> data(RTE::newArray<T>(count));
            m_source->read(data.get(), count * sizeof(T));
            m_source.reset();
            m_data.store(data.release(), std::memory_order_release);
        }
        return m_data.load(std::memory_order_relaxed);
    }

    unsigned int m_width;
    unsigned int m_height;
    mutable std::atomic<T*> m_data;
    mutable std::mutex m_mutex;
    mutable std::shared_ptr<const PlaneSource> m_source;
};

std::shared_ptr<const PlaneSource> sourceOf(const I_PlaneBase& plane)
{
    const auto* storage = dynamic_cast<const PlaneStorage*>(&plane);
    return storage ? storage->source() : nullptr;
}

std::unique_ptr<I_PlaneBase> makePlane(E_DataType type, unsigned int width, unsigned int height,
                                       bool allocate, std::shared_ptr<const PlaneSource> source)
{
    return visitElement(type, [&](auto tag) -> std::unique_ptr<I_PlaneBase> {
        using T = typename decltype(tag)::type;
        std::unique_ptr<T[]> data(allocate ? RTE::newArray<T>(1ULL * width * height) : nullptr);
        auto plane = std::make_unique<StoredPlane<T>>(width, height, nullptr, std::move(source));
        plane->adopt(data.release());
        return plane;
    });
}

} // namespace

PlaneSource::~PlaneSource() = default;

std::unique_ptr<I_PlaneBase> newPlane(E_DataType type, unsigned int width, unsigned int height)
{
    return makePlane(type, width, height, true, nullptr);
}

std::unique_ptr<I_PlaneBase> hollowPlane(E_DataType type, unsigned int width, unsigned int height)
{
    return makePlane(type, width, height, false, nullptr);
}

void adoptArray(I_PlaneBase& plane, void* array) noexcept
{
    dynamic_cast<PlaneStorage&>(plane).adopt(array);
}

bool claimPlane(I_PlaneBase& plane)
{
    auto* storage = dynamic_cast<PlaneStorage*>(&plane);
    return !storage || storage->claim();
}

void fillBytes(I_PlaneBase& plane, unsigned char value)
{
    std::memset(plane.GetData(), value, planeBytes(plane.GetDataType(), plane.GetWidth(), plane.GetHeight()));
}

std::unique_ptr<I_PlaneBase> createLazyPlane(E_DataType type, unsigned int width, unsigned int height,
                                             std::shared_ptr<const PlaneSource> source)
{
    static_cast<void>(planeBytes(type, width, height));
    return makePlane(type, width, height, false, std::move(source));
}

bool isUnread(const I_PlaneBase& plane)
{
    return sourceOf(plane) != nullptr;
}

void readPlane(const I_PlaneBase& plane, void* destination)
{
    const unsigned long long bytes = planeBytes(plane.GetDataType(), plane.GetWidth(), plane.GetHeight());
    if (const auto source = sourceOf(plane)) {
        source->read(destination, bytes);
        return;
    }
    const void* data = plane.GetData();
    RTE::verify(data != nullptr, "Plane has no data");
    if (bytes > 0) {
        std::memcpy(destination, data, bytes);
    }
}

unsigned long long planeBytes(E_DataType type, unsigned int width, unsigned int height)
{
    unsigned long long bytes = 0;
    if (__builtin_mul_overflow(1ULL * width * height, GetDataTypeSize(type), &bytes)) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Plane is too large")));
    }
    return bytes;
}

} // namespace BufferApi
