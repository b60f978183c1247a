// SPDX-License-Identifier: MIT
#include "imaging/DescriptorDevice.h"

#include "filesystem/OpenFile.h"

DescriptorDevice::DescriptorDevice(int descriptor) : m_descriptor(descriptor)
{
    const std::optional<FileIdentity> identity = fileIdentity(descriptor);
    m_size = identity ? identity->size : 0;
    setOpenMode(ReadOnly | Unbuffered);
}

qint64 DescriptorDevice::readData(char *to, qint64 maximum)
{
    return readPart(m_descriptor, pos(), to, maximum);
}
