set confirm off
set width 0
set print frame-arguments none
tbreak stop
run
echo shown:\ 
output plant.pump
echo \n
echo shown:\ 
output plant.parts
echo \n
echo shown:\ 
output plant.block
echo \n
echo shown:\ 
output text
echo \n
echo shown:\ 
output number
echo \n
echo shown:\ 
output list
echo \n
echo shown:\ 
output nothing
echo \n
python import sys; printers = sys.modules.get("modeling_nuv0_printers", sys.modules["__main__"])
python text = printers.texts["nuv::zero::ModelElement"]
python printers.texts["nuv::zero::ModelElement"] = lambda handle: "a text of the host"
echo shown:\ 
output plant.pump
echo \n
python printers.texts["nuv::zero::ModelElement"] = text
break stop
commands
silent
echo shown:\ 
output link
echo \n
echo shown:\ 
output walk
echo \n
echo shown:\ 
output result
echo \n
continue
end
continue
