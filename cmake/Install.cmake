# What an installed tree holds: the library with the headers that its public classes need, the program, and a CMake
# package. A static library would drag all of its own libraries along, so only the shared one is installed.
if(NOT BUILD_SHARED_LIBS)
  return()
endif()
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qmSoundCore)

# Public headers by folder under src/; what is not named here is the library's own affair.
set(QM_PUBLIC_HEADERS
  contract/*.h
  services/Diagnostics.h
  audio/CopyErrors.h audio/WaveDevices.h audio/cCopyAudioFileNCT.h audio/cPeakFile.h audio/cRecorder.h
  audio/cWaveformRenderer.h audio/qmPeakFileHeader.h
  item/ItemFieldAccess.h item/ItemFieldTypes.h item/ItemFields.h item/ItemVocabulary.h item/cHDItem.h
  item/cHDItemFields.def item/cHDItemMark.h item/cHDItemTimeExtra.h item/cHDItems.h item/cRiffReader.h
  item/tyHDListItem.h
  settings/cAudioSettings.h settings/cAudioSettingsFields.def settings/AudioSettingsVocabulary.h
  playback/cBasePlayer.h playback/cListPlayer.h playback/cPlayLog.h playback/cPlayLogFields.def playback/cPlayer.h
  playback/cPlayers.h
  controls/uWaveform.h kits/draw/Hill.h kits/draw/OffscreenSurface.h kits/draw/Picture.h
  kits/draw/Surface.h
  kits/common/Clock.h kits/common/Colours.h kits/common/Dates.h kits/common/Event.h kits/common/Files.h
  kits/common/MessageBox.h kits/common/Numbers.h kits/common/Registry.h kits/common/TagText.h kits/common/Text.h
  kits/sound/Platform.h kits/sound/SoundSystem.h kits/sound/cAudioFile.h kits/sound/cAudioFormat.h
  kits/sound/ctlVellanPlayer.h kits/sound/record/RecordingControl.h
  kits/sound/engine/AudioEngine.h kits/sound/engine/Device.h kits/sound/engine/Mixer.h
  kits/sound/engine/Notification.h kits/sound/engine/OfflineDevice.h
  kits/sound/devices/ClockOutput.h kits/sound/devices/LiveDevice.h kits/sound/devices/Output.h)
foreach(pattern ${QM_PUBLIC_HEADERS})
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${pattern})
  get_filename_component(folder ${pattern} DIRECTORY)
  install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qmSoundCore/${folder})
endforeach()

set_target_properties(quillmere PROPERTIES INSTALL_RPATH "\$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
install(TARGETS quillmere)
install(TARGETS qmSoundCore EXPORT qmSoundCoreTargets)
install(EXPORT qmSoundCoreTargets NAMESPACE qmSoundCore:: DESTINATION ${package_dir})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/qmSoundCoreConfig.cmake.in
  ${PROJECT_BINARY_DIR}/qmSoundCoreConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qmSoundCoreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qmSoundCoreConfig.cmake ${PROJECT_BINARY_DIR}/qmSoundCoreConfigVersion.cmake
  DESTINATION ${package_dir})
install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
