// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/ReadEverything.h"

#include "Core/Buffer/BufferApi.h"

#include <QHash>

#include <numeric>

namespace TestSupport
{

namespace
{

using namespace BufferApi;

class Reader
{
public:
    explicit Reader(unsigned long long mostBytes) : m_left(mostBytes) {}

    [[nodiscard]] unsigned long long sum() const noexcept { return m_sum; }
    [[nodiscard]] bool isDone() const noexcept { return m_left == 0; }

    void read(const QString& text) { m_sum += qHash(text); }
    void read(const Zt::LinearScale& scale)
    {
        m_sum += qHash(scale.getFactor()) + qHash(scale.getOffset());
        read(scale.getUnit());
        read(scale.getDescription());
    }
    void read(const I_PlaneBase& plane);
    void read(const AttributeMap& attributes);
    void read(const I_Component& component);
    void read(const I_Frame& frame);

private:
    unsigned long long m_left;
    unsigned long long m_sum = 0;
};

void Reader::read(const I_PlaneBase& plane)
{
    const unsigned long long bytes =
        1ULL * plane.GetWidth() * plane.GetHeight() * GetDataTypeSize(plane.GetDataType());
    if (bytes > m_left) {
        m_left = 0;
        return;
    }
    m_left -= bytes;
    const auto* first = static_cast<const unsigned char*>(plane.GetData());
    m_sum = std::accumulate(first, first + bytes, m_sum);
}

void Reader::read(const AttributeMap& attributes)
{
    for (const auto& [name, attribute] : attributes) {
        read(QString::fromStdString(name));
        if (const auto* text = dynamic_cast<const I_Attribute<QString>*>(attribute.get())) {
            read(text->GetValue());
        }
        const auto* values = dynamic_cast<const I_AttributePlane*>(attribute.get());
        if (values != nullptr && values->GetPlane() != nullptr) {
            read(*values->GetPlane());
        }
    }
}

void Reader::read(const I_Component& component)
{
    read(QString::fromStdString(component.GetName()));
    read(component.GetScale());
    for (unsigned int z = 0; z < component.GetPlaneCount() && !isDone(); ++z) {
        read(*component.GetPlane(z));
    }
}

void Reader::read(const I_Frame& frame)
{
    for (const Zt::LinearScale& scale :
         {frame.GetScaleX(), frame.GetScaleY(), frame.GetScaleZ(), frame.GetScaleI()}) {
        read(scale);
    }
    if (const auto* vectors = dynamic_cast<const I_FrameVector*>(&frame)) {
        m_sum += vectors->GetGridX() + vectors->GetGridY() + vectors->GetGridZ();
    }
    read(frame.GetAttributeList());
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        read(*frame.GetComponent(i));
    }
}

} // namespace

unsigned long long readEverything(const I_Buffer& buffer, unsigned long long mostBytes)
{
    Reader reader(mostBytes);
    reader.read(buffer.GetName());
    reader.read(buffer.GetAttributeList());
    for (unsigned int i = 0; i < buffer.GetFrameCount() && !reader.isDone(); ++i) {
        reader.read(*buffer.GetFrame(i));
    }
    return reader.sum();
}

} // namespace TestSupport
