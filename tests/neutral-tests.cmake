# SPDX-License-Identifier: MIT
# The tests that need nothing of the test world: no X server, no session bus, no Linux.

add_custom_target(neutral_tests)
set(VELMORA_NEUTRAL_TESTS
    app_active_application_test
    app_feedback_mail_test
    app_login_item_controller_test
    app_status_menu_test
    core_log_test
    core_timestamp_test
    detection_folder_listing_test
    detection_folder_resolver_test
    detection_new_screenshots_test
    detection_speed_optimizer_test
    files_rename_test
    files_reverse_action_test
    files_screenshot_trash_test
    files_undo_history_test
    filesystem_file_urls_test
    imaging_completion_wait_test
    imaging_decode_png_test
    imaging_decode_test
    imaging_picture_cache_test
    naming_name_words_test
    naming_screenshot_namer_test
    style_controls_test
    style_palette_test
    style_symbols_test
    tray_drag_pace_test
    tray_filename_field_test
    tray_frame_test
    tray_row_dismissals_test)

# The others are made known too, but not built.
foreach(room core filesystem imaging style detection naming files tray app)
    add_subdirectory(${room} EXCLUDE_FROM_ALL)
endforeach()
