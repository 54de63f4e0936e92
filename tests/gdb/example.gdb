# The function itself is meant, not the way to it (the first of the two places).
set confirm off
set width 0
set print frame-arguments none
tbreak main
run
break nuv::zero::traversal::internal::dumpLink
disable 2.1
continue
echo shown:\ 
output link
echo \n
continue
echo shown:\ 
output link
echo \n
