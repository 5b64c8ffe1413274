# Most of the time that a source takes goes into reading the same headers as its neighbours: several are compiled as one.
# So names that are local to a file differ within a target.
option(ORVCOMTRADE_TOGETHER "Compile several sources of a target as one (a third of the time)" ON)

function(orv_compile_together target)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ${ORVCOMTRADE_TOGETHER} UNITY_BUILD_BATCH_SIZE 28)
endfunction()
