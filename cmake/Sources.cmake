# Sources of the two libraries; the target, not the folder, decides what links widgets.
set(CORVANTA_CORE_SOURCES
    src/app/Batch_Cut.cpp src/app/Batch_Cut.h
    src/app/Command_Gate.cpp src/app/Command_Gate.h
    src/app/Command_Line.cpp src/app/Command_Line.h
    src/app/Help_Pages.cpp src/app/Help_Pages.h
    src/app/Media_Files.cpp src/app/Media_Files.h
    src/app/Qt_Translations.cpp src/app/Qt_Translations.h
    src/app/Work_Folder.cpp src/app/Work_Folder.h
    src/export/Export_Arguments.cpp src/export/Export_Arguments.h
    src/export/Fast_Cut_Arguments.cpp src/export/Fast_Cut_Arguments.h
    src/export/Fast_Cut_Plan.cpp src/export/Fast_Cut_Plan.h
    src/export/Fast_Cutter.cpp src/export/Fast_Cutter.h
    src/hotkeys/Hot_Key_Registry.cpp src/hotkeys/Hot_Key_Registry.h
    src/hotkeys/Object_Shortcut.cpp src/hotkeys/Object_Shortcut.h
    src/export/Image_Export.cpp src/export/Image_Export.h
    src/export/Join_Planner.cpp src/export/Join_Planner.h
    src/export/Segment_Cutter.cpp src/export/Segment_Cutter.h
    src/player/Frame_Index.cpp src/player/Frame_Index.h
    src/player/Frame_Probe.cpp src/player/Frame_Probe.h
    src/player/Seeking.cpp src/player/Seeking.h
    src/timeline/Cut_List.cpp src/timeline/Cut_List.h
    src/timeline/Object_Segment.h
    src/timeline/Segment_Editor.cpp src/timeline/Segment_Editor.h
    src/timeline/Segment_List.cpp src/timeline/Segment_List.h
    src/timeline/Segment_Table_Model.cpp src/timeline/Segment_Table_Model.h
    src/timeline/Timeline_Geometry.cpp src/timeline/Timeline_Geometry.h
    src/timeline/Timeline_Style.h
    src/timeline/Timeline_Zoom.cpp src/timeline/Timeline_Zoom.h
    src/tools/Media_Probe.cpp src/tools/Media_Probe.h
    src/tools/Progress.cpp src/tools/Progress.h
    src/tools/TimeStrings.cpp src/tools/TimeStrings.h
    src/tools/Tool_Arguments.cpp src/tools/Tool_Arguments.h
    src/tools/Tool_Locator.cpp src/tools/Tool_Locator.h
    src/tools/Tool_Log.cpp src/tools/Tool_Log.h
    src/tools/Tool_Process.cpp src/tools/Tool_Process.h
    src/tools/Tool_Runner.cpp src/tools/Tool_Runner.h
)

set(CORVANTA_GUI_SOURCES
    resources/MainWindow.ui
    resources/Window_Concatenate_Dimension.ui
    resources/Window_Export_To_Photos.ui
    resources/Window_Join_Files.ui
    resources/Window_Order_Concatenate.ui
    resources/Window_Progress.ui
    resources/Window_Tool_Log.ui
    src/app/AppDelegate.cpp src/app/AppDelegate.h
    src/app/ImageView_Drop_Files.cpp src/app/ImageView_Drop_Files.h
    src/app/MainWindow.cpp src/app/MainWindow.h
    src/app/Menus.cpp
    src/app/Open_File.cpp
    src/app/Prompts.h
    src/app/Qt_Prompts.cpp src/app/Qt_Prompts.h
    src/app/Segment_Editing.cpp
    src/app/Single_Instance.cpp src/app/Single_Instance.h
    src/app/StartUp.cpp
    src/app/Tool_Runs.cpp
    src/export/Concatenate.cpp
    src/export/Fast_Trim.cpp
    src/export/Join_Files.cpp
    src/export/Photos.cpp
    src/export/Segment_Export.cpp
    src/export/Slice.cpp
    src/export/Trim.cpp
    src/export/Window_Concatenate_Dimension.cpp src/export/Window_Concatenate_Dimension.h
    src/export/Window_Export_To_Photos.cpp src/export/Window_Export_To_Photos.h
    src/export/Window_Join_Files.cpp src/export/Window_Join_Files.h
    src/export/Window_Order_Concatenate.cpp src/export/Window_Order_Concatenate.h
    src/hotkeys/Arrow_Keys.cpp
    src/hotkeys/X11_Hot_Key_Service.cpp src/hotkeys/X11_Hot_Key_Service.h
    src/player/Frame_Stepping.cpp
    src/player/Player.cpp
    src/player/Preview_Pipeline.cpp src/player/Preview_Pipeline.h
    src/player/Preview_Player.cpp src/player/Preview_Player.h
    src/player/Preview_Thread.cpp src/player/Preview_Thread.h
    src/player/Transport.cpp
    src/timeline/Segment_Time_Delegate.cpp src/timeline/Segment_Time_Delegate.h
    src/timeline/Segments.cpp
    src/timeline/Thumbnails.cpp
    src/timeline/View_Middle_Tab.cpp src/timeline/View_Middle_Tab.h
    src/timeline/View_Waveform.cpp src/timeline/View_Waveform.h
    src/timeline/View_Video_Timeline.cpp src/timeline/View_Video_Timeline.h
    src/timeline/Zoom_Thumbnails.cpp src/timeline/Zoom_Thumbnails.h
    src/timeline/Waveform.cpp
    src/tools/Window_Progress.cpp src/tools/Window_Progress.h
    src/tools/Window_Tool_Log.cpp src/tools/Window_Tool_Log.h
)
