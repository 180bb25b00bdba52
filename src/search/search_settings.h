// The tuning decisions of the search, as plain globals that the search reads at full speed. They
// hold their defaults from the start of the program; only the settings commands change them, and
// only between searches. The order is that of settings files; distances are in 64ths of a ply.
#pragma once

#include <cstdint>

// A bonus for a check has one element per kind of check: none, direct, discovered, double.
inline constexpr int CHECK_KINDS = 4;
// A capture bonus has one element per captured piece type: none, pawn, knight, bishop, rook, queen.
inline constexpr int CAPTURE_KINDS = 6;

// Distance and extension gates
extern std::int32_t root_distance_multiplier;
extern bool enable_search_extensions;
extern std::int32_t min_depth_for_search_extensions_if_searching_pv_move;
extern std::int32_t min_depth_for_search_extensions_if_not_searching_pv_move;
extern std::int32_t full_extension_minimum_depth;
extern std::int32_t full_extension_root_depth_related_factor_multiplicator;
extern std::int32_t full_extension_root_depth_related_factor_divisor;
extern bool never_full_extension_in_quiescence_if_searching_pv_move;
extern bool never_full_extension_in_quiescence_if_not_searching_pv_move;

// Null move and mate threat test
extern bool skip_null_move_at_the_root;
extern std::int32_t min_distance_for_null_move;
extern std::int32_t min_ply_for_null_move;
extern std::int32_t max_ply_for_null_move;
extern bool skip_null_move_if_side_on_move_is_searching_for_mate;
extern bool skip_null_move_if_enemy_is_searching_for_mate;
extern std::int32_t maximum_material_margin_for_null_move;
extern bool skip_enhanced_transposition_cutoff_if_searching_null_move;
// Kept in settings files, read by no code.
extern bool skip_perpetual_check_test_if_searching_null_move;
extern bool skip_razoring_if_searching_null_move;
extern bool skip_extended_futility_pruning_if_searching_null_move;
extern bool skip_lmr_at_the_next_depth_if_searching_null_move;
extern bool skip_lmr_at_the_depth_after_the_next_if_searching_null_move;
extern std::int32_t null_move_reduction_critical_distance;
extern std::int32_t min_null_move_search_reduction;
extern std::int32_t max_null_move_search_reduction;
extern std::int32_t min_distance_for_mate_threat_test;

// Internal iterative deepening
extern std::int32_t min_depth_for_iid_if_searching_pv_move;
extern std::int32_t min_depth_for_iid_if_not_searching_pv_move;
extern std::int32_t iid_critical_distance;
extern std::int32_t iid_min_reduction;
extern std::int32_t iid_max_reduction;
extern std::int32_t iid_extra_reduction_if_not_searching_pv_move;
extern bool skip_razoring_if_doing_iid;
extern bool skip_extended_futility_pruning_if_doing_iid;

// Position type extensions and gates of selectivity
extern bool enable_position_type_dependent_search_extensions;
extern bool disable_selective_techniques_if_threats_exist;
extern bool disable_selective_techniques_if_searching_simple_endgames;

// Limited razoring
extern bool enable_limited_razoring_if_searching_pv_move;
extern bool enable_limited_razoring_if_not_searching_pv_move;
extern std::int32_t min_distance_for_limited_razoring;
extern std::int32_t max_distance_for_limited_razoring;
extern bool skip_limited_razoring_if_searching_for_mate;
extern std::int32_t minimum_enemy_pieces_left_for_limited_razoring;
extern std::int32_t limited_razoring_margin;
extern bool limited_razoring_reduction_independent_of_current_distance;
extern std::int32_t limited_razoring_dynamic_reduction_factor;
extern std::int32_t limited_razoring_static_reduced_distance;
extern bool skip_razoring_when_last_move_was_a_check;

// Extended futility pruning
extern bool enable_extended_futility_pruning_if_searching_pv_move;
extern bool enable_extended_futility_pruning_if_not_searching_pv_move;
extern std::int32_t min_distance_for_extended_futility_pruning;
extern std::int32_t max_distance_for_extended_futility_pruning;
extern bool skip_extended_futility_pruning_if_searching_for_mate;
extern std::int32_t extended_futility_pruning_margin;
extern bool skip_extended_futility_pruning_when_last_move_was_a_check;

// Futility pruning
extern bool enable_futility_pruning_if_searching_pv_move;
extern bool enable_futility_pruning_if_not_searching_pv_move;
extern std::int32_t max_distance_for_futility_pruning;
extern bool skip_futility_pruning_if_searching_for_mate;
extern std::int32_t futility_pruning_margin;

// Late move reduction and verification
extern bool enable_late_move_reduction;
extern bool enable_extended_late_move_reduction;
extern std::int32_t standard_late_move_reduction;
extern std::int32_t extended_late_move_reduction;
extern bool skip_late_move_reduction_if_in_principal_variation;
extern bool skip_late_move_reduction_if_extended;
// Kept in settings files, read by no code.
extern bool enable_aggressive_history_pruning;
extern bool enable_verification_search;

// Distance limits of the transposition table
extern std::int32_t required_distance_to_probe_hashtables;
extern std::int32_t required_distance_to_store_hashtables;

// Quiescence search
extern std::int32_t generate_checking_moves_min_distance;
extern std::int32_t search_every_normal_check_in_quiescence_min_distance;
extern std::int32_t search_every_discovered_check_in_quiescence_min_distance;
extern std::int32_t search_every_double_check_in_quiescence_min_distance;
extern bool always_search_hash_move_in_quiescence;
extern std::int32_t generate_castling_moves_in_quiescence_min_distance;
extern std::int32_t max_distance_for_stand_pat_checks;
extern bool no_stand_pat_check_if_full_searching_simple_endgames;

// Enhanced transposition cutoff
extern bool enable_ettc;
extern bool only_use_ettc_in_endgames;
extern bool only_use_ettc_on_cut_nodes;
extern std::int32_t min_distance_for_ettc;
extern std::int32_t max_distance_for_ettc;
extern std::int32_t max_pieces_left_for_ettc;
extern bool ettc_should_remove_refuted_moves;

// Extension bonuses and caps
extern std::int32_t full_simple_check_extension_bonus;
extern std::int32_t limited_simple_check_extension_bonus;
extern std::int32_t full_discovered_check_extension_bonus;
extern std::int32_t limited_discovered_check_extension_bonus;
extern std::int32_t full_double_check_extension_bonus;
extern std::int32_t limited_double_check_extension_bonus;
extern std::int32_t full_single_move_extension_bonus;
extern std::int32_t limited_single_move_extension_bonus;
extern std::int32_t full_recapture_extension_bonus;
extern std::int32_t limited_recapture_extension_bonus;
extern std::int32_t min_captured_piece_for_recapture_extension;
extern bool capture_and_recapture_must_be_on_the_same_sq;
extern std::int32_t full_passer_6th_rank_extension_bonus__non_endgame;
extern std::int32_t limited_passer_6th_rank_extension_bonus__non_endgame;
extern std::int32_t full_passer_6th_rank_extension_bonus__endgame;
extern std::int32_t limited_passer_6th_rank_extension_bonus__endgame;
extern bool passer_must_reach_6th_rank_by_non_capture_move;
extern std::int32_t full_passer_7th_rank_extension_bonus__non_endgame;
extern std::int32_t limited_passer_7th_rank_extension_bonus__non_endgame;
extern std::int32_t full_passer_7th_rank_extension_bonus__endgame;
extern std::int32_t limited_passer_7th_rank_extension_bonus__endgame;
extern std::int32_t full_rook_on_7th_rank_extension_bonus;
extern std::int32_t limited_rook_on_7th_rank_extension_bonus;
extern std::int32_t full_queen_attacked_extension_bonus;
extern std::int32_t limited_queen_attacked_extension_bonus;
extern bool enable_perpetual_check_detection;
extern std::int32_t full_perpetual_check_threat_extension_bonus;
extern std::int32_t limited_perpetual_check_threat_extension_bonus;
extern bool enable_pin_threat_detection;
extern bool consider_only_winning_pins_as_threats;
extern bool skip_stand_pat_because_of_pin_threat;
extern bool skip_pruning_at_this_ply_because_of_pin_threat;
extern bool skip_pruning_at_the_next_ply_because_of_pin_threat;
extern std::int32_t full_pin_threat_extension_bonus__new_pin;
extern std::int32_t limited_pin_threat_extension_bonus__new_pin;
extern std::int32_t full_pin_threat_extension_bonus__tightend_pin;
extern std::int32_t limited_pin_threat_extension_bonus__tightend_pin;
extern std::int32_t full_pin_threat_extension_bonus__hashed_pin;
extern std::int32_t limited_pin_threat_extension_bonus__hashed_pin;
extern bool always_assume_that_pin_threat_was_hashed;
extern std::int32_t full_mate_threat_extension_bonus;
extern std::int32_t limited_mate_threat_extension_bonus;
extern std::int32_t extend_if_mate_in_x_moves_threat;
extern std::int32_t maximum_distance_for_null_move_mate_threat_test;
extern bool limit_distance_for_null_move_mate_threat_test;
extern std::int32_t full_delayed_extensions_bonus;
extern std::int32_t limited_delayed_extensions_bonus;
extern std::int32_t full_instant_extensions_bonus;
extern std::int32_t limited_instant_extensions_bonus;
extern std::int32_t full_total_extensions_bonus;
extern std::int32_t limited_total_extensions_bonus;

// Move ordering
extern bool no_history_bonus_for_tactical_moves;
extern std::int32_t checking_move_sorting_bonus_if_not_playing_for_mate[CHECK_KINDS];
extern std::int32_t checking_move_sorting_bonus_if_playing_for_mate[CHECK_KINDS];
extern std::int32_t safe_queen_check_very_close_to_king_sorting_bonus;
extern std::int32_t safe_queen_check_quite_close_to_king_sorting_bonus;
extern std::int32_t safe_queen_check_not_close_to_king_sorting_bonus;
extern std::int32_t safe_non_queen_check_sorting_bonus;
extern std::int32_t capture_move_sorting_bonus[CAPTURE_KINDS];
extern std::int32_t very_promising_tactical_move_margin;
extern std::int32_t material_win_sorting_bonus__multiplicator;
extern std::int32_t material_win_sorting_bonus__divisor;
extern std::int32_t material_win_sorting_bonus__minimum;
extern std::int32_t material_quite_equal_sorting_bonus__multiplicator;
extern std::int32_t material_quite_equal_sorting_bonus__divisor;
extern std::int32_t material_quite_equal_sorting_bonus__minimum;
extern std::int32_t material_loss_sorting_malus__multiplicator;
extern std::int32_t material_loss_sorting_malus__divisor;
extern std::int32_t material_loss_sorting_malus__minimum;
extern std::int32_t tactical_moves_minimum_sorting_value;
extern std::int32_t tactical_moves_default_sorting_value;
extern std::int32_t promising_move_minimum_sorting_value;
extern bool enable_killer_heuristic_for_move_ordering;
extern bool if_killer1_is_promising_tactical_move_then_search_first;
extern std::int32_t max_promising_tacticals_before_killer_one;
extern std::int32_t killer1_bonus__quiescence;
extern std::int32_t killer2_bonus__quiescence;
extern std::int32_t wins_enough_material_to_reach_at_least_beta__quiescence;
extern bool enable_best_history_moves_before_remaining_tacticals;
extern bool search_all_tacticals_first_if_playing_for_mate;
extern std::int32_t max_material_margin_to_search_history_moves_before_tacticals;
extern std::int32_t max_history_moves_before_remaining_tacticals;
extern bool enable_static_move_ordering_from_sq_malus;
extern bool enable_static_move_ordering_to_sq_bonus;
extern bool enable_static_move_ordering_piece_dependent_bonus;
extern std::int32_t randomize_move_ordering_of_remaining_moves;
// Kept in settings files, read by no code.
extern std::int32_t randomize_quiescence_move_ordering;
extern bool score_checking_move_should_neglect_trade_knight_vs_bishop;
