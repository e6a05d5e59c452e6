# The package's own makefile links the library with dllwrap, which no tool chain has any more. Here
# the same objects are linked by the compiler.
include win32/Makefile.gcc

linked-dll: $(DLLDEF) $(OBJD)
	$(CC) $(CC_CPU_OPT) -shared -static -s -Wl,--nxcompat -Wl,--dynamicbase -o unzip32.dll $(OBJD) $(DLLDEF) $(LDLIBS)
