#include "search/search_settings.h"

// Distance and extension gates
std::int32_t root_distance_multiplier = 64;
bool enable_search_extensions = true;
std::int32_t min_depth_for_search_extensions_if_searching_pv_move = 1;
std::int32_t min_depth_for_search_extensions_if_not_searching_pv_move = 1;
std::int32_t full_extension_minimum_depth = 1;
std::int32_t full_extension_root_depth_related_factor_multiplicator = 2;
std::int32_t full_extension_root_depth_related_factor_divisor = 3;
bool never_full_extension_in_quiescence_if_searching_pv_move = false;
bool never_full_extension_in_quiescence_if_not_searching_pv_move = true;

// Null move and mate threat test
bool skip_null_move_at_the_root = true;
std::int32_t min_distance_for_null_move = 128;
std::int32_t min_ply_for_null_move = 4;
std::int32_t max_ply_for_null_move = 64000;
bool skip_null_move_if_side_on_move_is_searching_for_mate = false;
bool skip_null_move_if_enemy_is_searching_for_mate = false;
std::int32_t maximum_material_margin_for_null_move = 200;
bool skip_enhanced_transposition_cutoff_if_searching_null_move = false;
bool skip_perpetual_check_test_if_searching_null_move = true;
bool skip_razoring_if_searching_null_move = false;
bool skip_extended_futility_pruning_if_searching_null_move = false;
bool skip_lmr_at_the_next_depth_if_searching_null_move = true;
bool skip_lmr_at_the_depth_after_the_next_if_searching_null_move = true;
std::int32_t null_move_reduction_critical_distance = 384;
std::int32_t min_null_move_search_reduction = 128;
std::int32_t max_null_move_search_reduction = 128;
std::int32_t min_distance_for_mate_threat_test = -64000;

// Internal iterative deepening
std::int32_t min_depth_for_iid_if_searching_pv_move = 128;
std::int32_t min_depth_for_iid_if_not_searching_pv_move = 256;
std::int32_t iid_critical_distance = 512;
std::int32_t iid_min_reduction = 129;
std::int32_t iid_max_reduction = 192;
std::int32_t iid_extra_reduction_if_not_searching_pv_move = 64;
bool skip_razoring_if_doing_iid = true;
bool skip_extended_futility_pruning_if_doing_iid = true;

// Position type extensions and gates of selectivity
bool enable_position_type_dependent_search_extensions = true;
bool disable_selective_techniques_if_threats_exist = true;
bool disable_selective_techniques_if_searching_simple_endgames = true;

// Limited razoring
bool enable_limited_razoring_if_searching_pv_move = false;
bool enable_limited_razoring_if_not_searching_pv_move = true;
std::int32_t min_distance_for_limited_razoring = 129;
std::int32_t max_distance_for_limited_razoring = 208;
bool skip_limited_razoring_if_searching_for_mate = true;
std::int32_t minimum_enemy_pieces_left_for_limited_razoring = 4;
std::int32_t limited_razoring_margin = 1020;
bool limited_razoring_reduction_independent_of_current_distance = false;
std::int32_t limited_razoring_dynamic_reduction_factor = 64;
std::int32_t limited_razoring_static_reduced_distance = 112;
bool skip_razoring_when_last_move_was_a_check = false;

// Extended futility pruning
bool enable_extended_futility_pruning_if_searching_pv_move = false;
bool enable_extended_futility_pruning_if_not_searching_pv_move = true;
std::int32_t min_distance_for_extended_futility_pruning = 65;
std::int32_t max_distance_for_extended_futility_pruning = 137;
bool skip_extended_futility_pruning_if_searching_for_mate = true;
std::int32_t extended_futility_pruning_margin = 600;
bool skip_extended_futility_pruning_when_last_move_was_a_check = false;

// Futility pruning
bool enable_futility_pruning_if_searching_pv_move = false;
bool enable_futility_pruning_if_not_searching_pv_move = true;
std::int32_t max_distance_for_futility_pruning = 64;
bool skip_futility_pruning_if_searching_for_mate = false;
std::int32_t futility_pruning_margin = 300;

// Late move reduction and verification
bool enable_late_move_reduction = true;
bool enable_extended_late_move_reduction = true;
std::int32_t standard_late_move_reduction = 64;
std::int32_t extended_late_move_reduction = 192;
bool skip_late_move_reduction_if_in_principal_variation = true;
bool skip_late_move_reduction_if_extended = true;
bool enable_aggressive_history_pruning = true;
bool enable_verification_search = true;

// Distance limits of the transposition table
std::int32_t required_distance_to_probe_hashtables = -64000;
std::int32_t required_distance_to_store_hashtables = -64000;

// Quiescence search
std::int32_t generate_checking_moves_min_distance = -384;
std::int32_t search_every_normal_check_in_quiescence_min_distance = -51;
std::int32_t search_every_discovered_check_in_quiescence_min_distance = -51;
std::int32_t search_every_double_check_in_quiescence_min_distance = -64000;
bool always_search_hash_move_in_quiescence = false;
std::int32_t generate_castling_moves_in_quiescence_min_distance = -64000;
std::int32_t max_distance_for_stand_pat_checks = 0;
bool no_stand_pat_check_if_full_searching_simple_endgames = true;

// Enhanced transposition cutoff
bool enable_ettc = false;
bool only_use_ettc_in_endgames = true;
bool only_use_ettc_on_cut_nodes = true;
std::int32_t min_distance_for_ettc = 64;
std::int32_t max_distance_for_ettc = 128;
std::int32_t max_pieces_left_for_ettc = 10;
bool ettc_should_remove_refuted_moves = true;

// Extension bonuses and caps
std::int32_t full_simple_check_extension_bonus = 40;
std::int32_t limited_simple_check_extension_bonus = 24;
std::int32_t full_discovered_check_extension_bonus = 32;
std::int32_t limited_discovered_check_extension_bonus = 20;
std::int32_t full_double_check_extension_bonus = 80;
std::int32_t limited_double_check_extension_bonus = 40;
std::int32_t full_single_move_extension_bonus = 128;
std::int32_t limited_single_move_extension_bonus = 64;
std::int32_t full_recapture_extension_bonus = 28;
std::int32_t limited_recapture_extension_bonus = 12;
std::int32_t min_captured_piece_for_recapture_extension = 1;
bool capture_and_recapture_must_be_on_the_same_sq = false;
std::int32_t full_passer_6th_rank_extension_bonus__non_endgame = 24;
std::int32_t limited_passer_6th_rank_extension_bonus__non_endgame = 12;
std::int32_t full_passer_6th_rank_extension_bonus__endgame = 32;
std::int32_t limited_passer_6th_rank_extension_bonus__endgame = 16;
bool passer_must_reach_6th_rank_by_non_capture_move = true;
std::int32_t full_passer_7th_rank_extension_bonus__non_endgame = 64;
std::int32_t limited_passer_7th_rank_extension_bonus__non_endgame = 32;
std::int32_t full_passer_7th_rank_extension_bonus__endgame = 64;
std::int32_t limited_passer_7th_rank_extension_bonus__endgame = 32;
std::int32_t full_rook_on_7th_rank_extension_bonus = 12;
std::int32_t limited_rook_on_7th_rank_extension_bonus = 6;
std::int32_t full_queen_attacked_extension_bonus = 12;
std::int32_t limited_queen_attacked_extension_bonus = 8;
bool enable_perpetual_check_detection = true;
std::int32_t full_perpetual_check_threat_extension_bonus = 16;
std::int32_t limited_perpetual_check_threat_extension_bonus = 4;
bool enable_pin_threat_detection = true;
bool consider_only_winning_pins_as_threats = false;
bool skip_stand_pat_because_of_pin_threat = false;
bool skip_pruning_at_this_ply_because_of_pin_threat = true;
bool skip_pruning_at_the_next_ply_because_of_pin_threat = true;
std::int32_t full_pin_threat_extension_bonus__new_pin = 32;
std::int32_t limited_pin_threat_extension_bonus__new_pin = 20;
std::int32_t full_pin_threat_extension_bonus__tightend_pin = 24;
std::int32_t limited_pin_threat_extension_bonus__tightend_pin = 20;
std::int32_t full_pin_threat_extension_bonus__hashed_pin = 24;
std::int32_t limited_pin_threat_extension_bonus__hashed_pin = 20;
bool always_assume_that_pin_threat_was_hashed = false;
std::int32_t full_mate_threat_extension_bonus = 64;
std::int32_t limited_mate_threat_extension_bonus = 32;
std::int32_t extend_if_mate_in_x_moves_threat = 100;
std::int32_t maximum_distance_for_null_move_mate_threat_test = -1;
bool limit_distance_for_null_move_mate_threat_test = true;
std::int32_t full_delayed_extensions_bonus = 128;
std::int32_t limited_delayed_extensions_bonus = 80;
std::int32_t full_instant_extensions_bonus = 128;
std::int32_t limited_instant_extensions_bonus = 80;
std::int32_t full_total_extensions_bonus = 192;
std::int32_t limited_total_extensions_bonus = 128;

// Move ordering
bool no_history_bonus_for_tactical_moves = true;
std::int32_t checking_move_sorting_bonus_if_not_playing_for_mate[CHECK_KINDS] = {0, 15, 10, 65};
std::int32_t checking_move_sorting_bonus_if_playing_for_mate[CHECK_KINDS] = {0, 70, 50, 75};
std::int32_t safe_queen_check_very_close_to_king_sorting_bonus = 75;
std::int32_t safe_queen_check_quite_close_to_king_sorting_bonus = 10;
std::int32_t safe_queen_check_not_close_to_king_sorting_bonus = 6;
std::int32_t safe_non_queen_check_sorting_bonus = 4;
std::int32_t capture_move_sorting_bonus[CAPTURE_KINDS] = {0, 4, 5, 5, 6, 10};
std::int32_t very_promising_tactical_move_margin = 150;
std::int32_t material_win_sorting_bonus__multiplicator = 1;
std::int32_t material_win_sorting_bonus__divisor = 8;
std::int32_t material_win_sorting_bonus__minimum = 15;
std::int32_t material_quite_equal_sorting_bonus__multiplicator = 1;
std::int32_t material_quite_equal_sorting_bonus__divisor = 16;
std::int32_t material_quite_equal_sorting_bonus__minimum = 0;
std::int32_t material_loss_sorting_malus__multiplicator = 1;
std::int32_t material_loss_sorting_malus__divisor = 16;
std::int32_t material_loss_sorting_malus__minimum = 8;
std::int32_t tactical_moves_minimum_sorting_value = 256;
std::int32_t tactical_moves_default_sorting_value = 325;
std::int32_t promising_move_minimum_sorting_value = 350;
bool enable_killer_heuristic_for_move_ordering = true;
bool if_killer1_is_promising_tactical_move_then_search_first = true;
std::int32_t max_promising_tacticals_before_killer_one = 2;
std::int32_t killer1_bonus__quiescence = 300;
std::int32_t killer2_bonus__quiescence = 200;
std::int32_t wins_enough_material_to_reach_at_least_beta__quiescence = 30;
bool enable_best_history_moves_before_remaining_tacticals = false;
bool search_all_tacticals_first_if_playing_for_mate = true;
std::int32_t max_material_margin_to_search_history_moves_before_tacticals = 400;
std::int32_t max_history_moves_before_remaining_tacticals = 1;
bool enable_static_move_ordering_from_sq_malus = true;
bool enable_static_move_ordering_to_sq_bonus = true;
bool enable_static_move_ordering_piece_dependent_bonus = true;
std::int32_t randomize_move_ordering_of_remaining_moves = 5;
std::int32_t randomize_quiescence_move_ordering = 8;
bool score_checking_move_should_neglect_trade_knight_vs_bishop = true;
