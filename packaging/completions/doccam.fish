# Completion of doccam for fish.
set -l commands list sizes capture scan read controls focus pdf clean doctor
set -l stills '__fish_seen_subcommand_from capture scan read'
set -l pages '__fish_seen_subcommand_from capture scan'
set -l writers '__fish_seen_subcommand_from capture scan pdf clean'
set -l none "not __fish_seen_subcommand_from $commands"

complete -c doccam -n "$none" -f
complete -c doccam -n '__fish_seen_subcommand_from list sizes controls focus doctor' -f

complete -c doccam -n "$none" -a list -d 'List the cameras that are attached'
complete -c doccam -n "$none" -a sizes -d 'List the frame sizes that a camera offers'
complete -c doccam -n "$none" -a capture -d 'Take a still for each file named'
complete -c doccam -n "$none" -a scan -d 'Make a PDF of sheet after sheet'
complete -c doccam -n "$none" -a read -d 'Read codes from picture files, or from the camera'
complete -c doccam -n "$none" -a controls -d 'Show or set the picture controls'
complete -c doccam -n "$none" -a focus -d 'Have the camera focus once'
complete -c doccam -n "$none" -a pdf -d 'Make one PDF of image files'
complete -c doccam -n "$none" -a clean -d 'Whiten the margins and the paper of picture files'
complete -c doccam -n "$none" -a doctor -d 'Say what is wrong with the cameras'

complete -c doccam -l verbose -d 'Print the diagnostics of the library'
complete -c doccam -l json -d 'Print results as JSON'
complete -c doccam -l camera -x -a '(seq 0 8)' -d 'The camera to use'
complete -c doccam -l virtual -d 'Use virtual cameras'
complete -c doccam -s h -l help -d 'Print help'
complete -c doccam -n "$none" -l version -d 'Print the version'

complete -c doccam -n "$stills" -l size -x -a '640x480 1280x960 1600x1200 2048x1536 3264x2448' -d 'Frame size'
complete -c doccam -n "$stills" -l format -x -a 'mjpeg yuyv' -d 'Pixel format'
complete -c doccam -n "$pages" -l rotate -x -a '0 90 180 270' -d 'Turn clockwise'
complete -c doccam -n "$pages" -l colour -x -a 'colour grey bw' -d 'Colour mode'
complete -c doccam -n "$pages" -l color -x -a 'colour grey bw' -d 'Colour mode'
complete -c doccam -n "$pages" -l clean-edges -d 'Whiten the dark margins'
complete -c doccam -n "$pages" -l clean-background -d 'Whiten the paper'
complete -c doccam -n '__fish_seen_subcommand_from capture scan clean' -l quality -x -d 'Quality of JPEG, 0 to 100'
complete -c doccam -n "$writers" -l force -d 'Replace files that exist'

complete -c doccam -n '__fish_seen_subcommand_from capture' -l crop -d 'Cut out the sheet'
complete -c doccam -n '__fish_seen_subcommand_from scan' -l auto -d 'Take a page whenever a sheet lies still'
complete -c doccam -n '__fish_seen_subcommand_from scan' -l pages -x -d 'End after so many pages'
complete -c doccam -n '__fish_seen_subcommand_from scan' -l whole-frame -d 'Take the whole frame'
complete -c doccam -n '__fish_seen_subcommand_from read' -l kind -x -a 'qr bar any' -d 'Kind of code'
complete -c doccam -n '__fish_seen_subcommand_from read' -l wait -x -d 'How long to look'
complete -c doccam -n '__fish_seen_subcommand_from controls' -l reset -d 'Set to the defaults'
complete -c doccam -n '__fish_seen_subcommand_from controls' -a 'brightness contrast saturation hue gain gamma'
complete -c doccam -n '__fish_seen_subcommand_from focus' -l switch -d 'Switch between two distances'
complete -c doccam -n '__fish_seen_subcommand_from clean' -l edges -d 'Only the margins'
complete -c doccam -n '__fish_seen_subcommand_from clean' -l background -d 'Only the paper'
complete -c doccam -n '__fish_seen_subcommand_from clean' -l bright-sheet -d 'Whiten all but what is bright'
complete -c doccam -n '__fish_seen_subcommand_from clean' -l into -x -a '(__fish_complete_directories)' -d 'Folder to write into'
complete -c doccam -n '__fish_seen_subcommand_from clean' -l in-place -d 'Replace the pictures'
complete -c doccam -n '__fish_seen_subcommand_from doctor' -l add -d 'Add the cameras to the supported models'
