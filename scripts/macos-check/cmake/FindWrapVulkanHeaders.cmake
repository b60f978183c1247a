# SPDX-License-Identifier: MIT
# Qt's packages ask for Vulkan's headers, which are in the folder of all headers of this machine.
set(WrapVulkanHeaders_FOUND TRUE)
if(NOT TARGET WrapVulkanHeaders::WrapVulkanHeaders)
    add_library(WrapVulkanHeaders::WrapVulkanHeaders INTERFACE IMPORTED)
endif()
