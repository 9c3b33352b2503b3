// SPDX-License-Identifier: Apache-2.0
// A program of somebody else's: only installed headers, only exported symbols.
#include <Core/Buffer/Buffer.h>
#include <Core/Common/Common.h>
#include <Core/DataObjects/DataObjects.h>

#include <iostream>
#include <memory>

int main()
{
    const auto decoder = DataObjects::FrameDecoder::frameDecoders().create("mono-12p").value();
    const unsigned char packed[] = {0x21, 0x43, 0x65};
    const DataObjects::FrameData frame = decoder->decode({packed, sizeof packed}, QSize(2, 1));

    const std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::CreateBuffer());
    buffer->AddFrame(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 2, 1, 1));
    auto* plane = buffer->GetFrame(0)->GetPlane(0, 0);
    std::copy(frame.cbegin(), frame.cend(), static_cast<unsigned short*>(plane->GetData()));

    DataObjects::ImageData<unsigned short> pixels(static_cast<unsigned short*>(plane->GetData()), 2, 1,
                                                  false);
    pixels *= 2.0;
    std::cout << pixels[0] << ' ' << pixels[1] << '\n';
    return pixels[0] == 2 * 0x321 && pixels[1] == 2 * 0x654 ? 0 : 1;
}
